#pragma once

#include "cleanup/AuditLogEntry.h"
#include "state/FlowRunner.h"

#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace kestrow {

// The audit chain check of the Settings screen: one at a time, its verdict as one line, and
// the log's entries beside it.
class AuditCheck : public QObject {
    Q_OBJECT

public:
    explicit AuditCheck(QString homeURL, QObject* parent = nullptr);

    [[nodiscard]] bool isVerifyingAudit() const { return m_isVerifying; }
    [[nodiscard]] const std::optional<QString>& auditVerificationMessage() const { return m_message; }
    [[nodiscard]] const std::vector<AuditLogEntry>& recentAuditEntries() const { return m_entries; }

    // Ignored while a check runs.
    void verifyAuditChain();

Q_SIGNALS:
    void changed();

private:
    struct Verdict {
        QString message;
        std::vector<AuditLogEntry> entries;
    };

    QString m_home;
    bool m_isVerifying = false;
    std::optional<QString> m_message;
    std::vector<AuditLogEntry> m_entries;
    FlowRunner m_runner;
};

} // namespace kestrow
