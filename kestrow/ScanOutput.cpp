#include "ScanOutput.h"

#include "CommandLine.h"

#include "platform/NativePath.h"
#include "support/JsonWriter.h"

namespace kestrow::cli {

namespace {

// Padded as shown: a raw byte of a name takes four columns ("\xE9").
QString padded(const QString& text, int width)
{
    return NativePath::displayText(text).leftJustified(width, QLatin1Char(' '));
}

QString table(const ScanResult& result)
{
    QString out;
    if (result.items.empty())
        out += QStringLiteral("Nothing found to clean.\n");
    for (const CategorySummary& category : result.summary.categoryBreakdown) {
        out += QStringLiteral("\n%1  (%2 items, %3)\n")
                   .arg(category.category.displayName())
                   .arg(category.itemCount)
                   .arg(category.formattedAllocatedBytes());
        for (const DiscoveredItem& item : result.items) {
            if (item.category != category.category)
                continue;
            out += QStringLiteral("  %1 %2 %3  %4\n")
                       .arg(padded(item.riskTier.displayName(), 16), item.formattedAllocatedSize().rightJustified(10),
                            padded(item.itemDescription, 36), item.path);
        }
    }
    out += QStringLiteral("\nFound %1 in %2 items. Safe to free: %3. To review: %4.\n")
               .arg(result.summary.formattedAllocatedBytes())
               .arg(result.summary.totalItems)
               .arg(result.summary.formattedSafeFreeableBytes(), result.summary.formattedReviewFreeableBytes());
    if (result.summary.requiresFullDiskAccess)
        out += QStringLiteral("Some items could not be read completely: grant access to see them whole.\n");
    for (const QString& warning : result.warnings)
        out += QStringLiteral("warning: ") + warning + QLatin1Char('\n');
    return out;
}

} // namespace

void reportScan(const ScanResult& result, bool json)
{
    if (json)
        printOut(JsonWriter::write(result.toJson(DateEncoding::iso8601), {.pretty = true, .sortKeys = false}) + '\n');
    else
        printOut(table(result));
}

} // namespace kestrow::cli
