#include "TrashRunOutput.h"

#include "CommandLine.h"

#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

namespace kestrow::cli {

namespace {

QString outcomeWord(const TrashSummary& summary, TrashItemStatus status)
{
    switch (status) {
    case TrashItemStatus::success:
        return summary.isPermanentPurge() ? QStringLiteral("deleted") : QStringLiteral("trashed");
    case TrashItemStatus::simulated:
        return QStringLiteral("would go");
    case TrashItemStatus::failed:
        return QStringLiteral("FAILED");
    case TrashItemStatus::skipped:
        return QStringLiteral("skipped");
    }
    return {};
}

QString trashSummaryText(const TrashSummary& summary)
{
    QString out;
    for (const TrashItemRecord& record : summary.records()) {
        out += QStringLiteral("%1 %2  %3\n")
                   .arg(outcomeWord(summary, record.status).leftJustified(9, QLatin1Char(' ')),
                        ByteCountFormatter::format(record.allocatedBytes).rightJustified(10), record.sourcePath);
        if (record.errorMessage)
            out += QStringLiteral("          ") + *record.errorMessage + QLatin1Char('\n');
    }
    const QString freed = ByteCountFormatter::format(summary.totalAllocatedBytesFreed());
    if (summary.isDryRun())
        out += QStringLiteral("\nDry run: %1 (%2) would go to the Trash. Nothing was moved.")
                   .arg(countedItems(summary.successCount()), freed);
    else if (summary.isPermanentPurge())
        out += QStringLiteral("\nDeleted %1 for good: %2 freed.").arg(countedItems(summary.successCount()), freed);
    else
        out += QStringLiteral("\nMoved %1 to the Trash: %2 freed.").arg(countedItems(summary.successCount()), freed);
    if (summary.failureCount() > 0)
        out += QStringLiteral(" %1 failed.").arg(countedItems(summary.failureCount()));
    return out + QLatin1Char('\n');
}

} // namespace

QString countedItems(std::int64_t count)
{
    return QString::number(count) + (count == 1 ? QStringLiteral(" item") : QStringLiteral(" items"));
}

int reportTrashRun(const TrashSummary& summary, bool json)
{
    if (json)
        printOut(JsonWriter::write(summary.toJson(DateEncoding::iso8601), {.pretty = true}) + '\n');
    else
        printOut(trashSummaryText(summary));
    return summary.failureCount() > 0 ? exitFailure : exitSuccess;
}

} // namespace kestrow::cli
