#include "scan/targets/UserLogScanner.h"

#include "platform/PathText.h"
#include "scan/targets/ProtectedFolder.h"

namespace kestrow {

void UserLogScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const char* ruleId = "sys.user.logs";
    const QString logs = context.home(QStringLiteral("Library/Logs"));
    const std::vector<DirectoryEntry> entries = ProtectedFolder::listTopFolder(
        scan, context,
        TargetScan::Location::at(logs, StorageCategory::systemLogs, QStringLiteral("User Logs"), ruleId));
    for (const DirectoryEntry& entry : entries) {
        scan.checkCancellation();
        // Crash reports have a sub-scan of their own.
        if (entry.name == QLatin1String("DiagnosticReports") || entry.name == QLatin1String("CrashReporter"))
            continue;
        scan.emitIfContent(TargetScan::Location::at(PathText::appending(logs, entry.name), StorageCategory::systemLogs,
                                                    entry.name + QStringLiteral(" Log Data"), ruleId));
    }
}

} // namespace kestrow
