#include "TrashNote.h"

#include "CommandLine.h"

#include "cleanup/TrashLedger.h"
#include "support/ByteCountFormatter.h"

namespace kestrow::cli {

QString trashNoteText(const TrashHoldings& holdings)
{
    if (holdings.itemsCount() == 0)
        return {};
    QString text =
        QStringLiteral("The Trash now holds %1 from Kestrow's runs; `kestrow trash empty` frees it for good.")
            .arg(ByteCountFormatter::format(holdings.allocatedBytes()));
    if (!holdings.runs.empty() && holdings.runs.back().bytesHeldElsewhere > 0)
        text += QStringLiteral(" %1 of what this run freed will not come back: those files have other hard links "
                               "outside what moved.")
                    .arg(ByteCountFormatter::format(holdings.runs.back().bytesHeldElsewhere));
    return text + QLatin1Char('\n');
}

void printTrashNote(const QString& home)
{
    if (!standardOutputIsTerminal())
        return;
    try {
        const TrashLedger ledger({.auditLogger = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home})});
        printOut(trashNoteText(ledger.read()));
    } catch (const AuditLoggerError&) {
        // Without the log there is no telling Kestrow's items apart; the run's own report stands.
    }
}

} // namespace kestrow::cli
