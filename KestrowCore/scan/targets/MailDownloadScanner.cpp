#include "scan/targets/MailDownloadScanner.h"

#include "platform/PathText.h"
#include "scan/targets/ProtectedFolder.h"

namespace kestrow {

void MailDownloadScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const char* ruleId = "sys.mail.downloads";
    const QString container = context.home(QStringLiteral("Library/Containers/com.apple.mail"));
    const QString library = PathText::appending(container, QStringLiteral("Data/Library"));
    const TargetScan::Location downloads = TargetScan::Location::at(
        PathText::appending(library, QStringLiteral("Mail Downloads")), StorageCategory::mailDownloads,
        QStringLiteral("Apple Mail Attachment Downloads"), ruleId);
    // The container's library is what privacy protection guards; its downloads folder can't
    // be seen without it.
    if (context.fileManager->fileExists(library) &&
        ProtectedFolder::isRefusal(context.fileManager->contentsOfDirectory(library, true)))
        ProtectedFolder::reportRefusal(scan, QStringLiteral("Apple Mail Downloads"), downloads);
    else
        scan.emitIfContent(downloads);

    scan.emitIfContent(TargetScan::Location::at(context.home(QStringLiteral("Library/Mail Downloads")),
                                                StorageCategory::mailDownloads, QStringLiteral("Legacy Mail Downloads"),
                                                ruleId));
}

} // namespace kestrow
