#include "presentation/AuditCheck.h"

#include "cleanup/AuditLogger.h"

namespace kestrow {

AuditCheck::AuditCheck(QString homeURL, QObject* parent)
    : QObject(parent)
    , m_home(std::move(homeURL))
    , m_runner(*this, 1)
{
}

void AuditCheck::verifyAuditChain()
{
    if (m_isVerifying)
        return;
    m_isVerifying = true;
    Q_EMIT changed();
    m_runner.run<Verdict>(
        [home = m_home](std::stop_token) {
            AuditLogger logger({.homeURL = home});
            const AuditVerificationResult result = logger.verifyIntegrity();
            Verdict verdict{.entries = logger.readEntries()};
            if (result.isValid)
                verdict.message = QStringLiteral("Valid SHA-256 chain: ") + QString::number(result.totalEntries) +
                                  QStringLiteral(" entries verified with 0 tampering.");
            else
                verdict.message = QStringLiteral("Tampering detected at block ") +
                                  QString::number(result.tamperedLineIndex.value_or(0)) + QStringLiteral(": ") +
                                  result.failureReason.value_or(QStringLiteral("Hash mismatch"));
            return verdict;
        },
        [this](FlowOutcome<Verdict> outcome) {
            if (outcome.value) {
                m_message = outcome.value->message;
                m_entries = std::move(outcome.value->entries);
            } else {
                m_message = QStringLiteral("Verification check: ") + outcome.error;
            }
            m_isVerifying = false;
            Q_EMIT changed();
        });
}

} // namespace kestrow
