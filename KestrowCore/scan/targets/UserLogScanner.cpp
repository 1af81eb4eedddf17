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
    if (!context.isLinux())
        return;

    // The X server's logs of the run before the last; the current ones are still written to. The
    // session's own "~/.xsession-errors.old" lies right in the home, where nothing may be removed,
    // so it is not offered.
    const QString xorg = context.home(QStringLiteral(".local/share/xorg"));
    for (const DirectoryEntry& entry : context.fileManager->contentsOfDirectory(xorg, false).entries) {
        scan.checkCancellation();
        if (!entry.isDirectory && entry.name.endsWith(QLatin1String(".log.old")))
            scan.emitIfContent(TargetScan::Location::at(PathText::appending(xorg, entry.name),
                                                        StorageCategory::systemLogs,
                                                        entry.name + QStringLiteral(" Log Data"), ruleId));
    }
}

} // namespace kestrow
