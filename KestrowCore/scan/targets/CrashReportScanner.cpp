#include "scan/targets/CrashReportScanner.h"

#include "scan/targets/ProtectedFolder.h"

namespace kestrow {

void CrashReportScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const std::pair<const char*, const char*> rows[] = {
        {"Library/Logs/DiagnosticReports", "User Diagnostic & Crash Reports (.ips)"},
        {"Library/Logs/CrashReporter", "Legacy User Crash Reports"},
        {"/Library/Logs/DiagnosticReports", "System Diagnostic & Panic Reports"},
    };
    for (const auto& [folder, label] : rows) {
        scan.checkCancellation();
        ProtectedFolder::emitUnlessRefused(scan, context,
                                           TargetScan::Location::at(context.home(QLatin1String(folder)),
                                                                    StorageCategory::crashReports, QLatin1String(label),
                                                                    "sys.crash.user_reports"));
    }
}

} // namespace kestrow
