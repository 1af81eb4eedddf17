#include "LensOutput.h"

#include "CommandLine.h"
#include "TrashRunOutput.h"

#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

namespace kestrow::cli {

namespace {

constexpr int barWidth = 10;

QString displayName(const SpaceNode& node)
{
    return node.isDirectory ? node.name + QLatin1Char('/') : node.name;
}

// "[####------]  40%": the node's share of its parent's room on disk.
QString share(std::int64_t part, std::int64_t whole)
{
    const double fraction = whole > 0 ? static_cast<double>(part) / static_cast<double>(whole) : 0.0;
    const int filled = static_cast<int>(fraction * barWidth + 0.5);
    return QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(barWidth - filled, QLatin1Char('-')) +
           QStringLiteral("] ") + QString::number(static_cast<int>(fraction * 100 + 0.5)).rightJustified(3) +
           QLatin1Char('%');
}

void appendRows(QString& out, const SpaceNode& folder, int top, int level)
{
    if (!folder.children)
        return;
    const QString indent(2 * level, QLatin1Char(' '));
    const std::vector<SpaceNode>& children = *folder.children;
    const std::size_t shown = std::min(children.size(), static_cast<std::size_t>(top));
    for (std::size_t index = 0; index < shown; ++index) {
        const SpaceNode& child = children[index];
        out += QStringLiteral("%1  %2  %3  %4%5\n")
                   .arg(ByteCountFormatter::format(child.allocatedSizeBytes).rightJustified(10),
                        share(child.allocatedSizeBytes, folder.allocatedSizeBytes),
                        countedItems(child.itemCount).rightJustified(12), indent, displayName(child));
        appendRows(out, child, top, level + 1);
    }
    if (children.size() > shown) {
        std::int64_t rest = 0;
        for (std::size_t index = shown; index < children.size(); ++index)
            rest += children[index].allocatedSizeBytes;
        out += QStringLiteral("%1  %2  %3  %4... %5 more\n")
                   .arg(ByteCountFormatter::format(rest).rightJustified(10), share(rest, folder.allocatedSizeBytes),
                        QString(12, QLatin1Char(' ')), indent)
                   .arg(children.size() - shown);
    }
}

} // namespace

void reportLens(const SpaceNode& root, int top, bool json)
{
    if (json) {
        printOut(JsonWriter::write(root.toJson(DateEncoding::iso8601), {.pretty = true, .sortKeys = false}) + '\n');
        return;
    }
    QString out = QStringLiteral("%1  %2 on disk (%3 logical), %4\n")
                      .arg(root.isDirectory ? root.path + QLatin1Char('/') : root.path,
                           ByteCountFormatter::format(root.allocatedSizeBytes),
                           ByteCountFormatter::format(root.logicalSizeBytes), countedItems(root.itemCount));
    if (root.children && root.children->empty())
        out += QStringLiteral("Nothing listed: the folder is empty, holds only hidden entries, or cannot be read.\n");
    else if (root.children)
        out += QLatin1Char('\n');
    appendRows(out, root, top, 0);
    printOut(out);
}

void reportLensFiles(const std::vector<SpaceNode>& nodes, bool json)
{
    if (json) {
        JsonValue::Array array;
        array.reserve(nodes.size());
        for (const SpaceNode& node : nodes)
            array.push_back(node.toJson(DateEncoding::iso8601));
        printOut(JsonWriter::write(JsonValue(std::move(array)), {.pretty = true, .sortKeys = false}) + '\n');
        return;
    }
    if (nodes.empty()) {
        printOut(QStringLiteral("Nothing matches.\n"));
        return;
    }
    QString out;
    std::int64_t total = 0;
    for (const SpaceNode& node : nodes) {
        const QString kind = node.fileCategory ? node.fileCategory->rawValue() : QStringLiteral("folder");
        out += QStringLiteral("%1  %2  %3\n")
                   .arg(ByteCountFormatter::format(node.allocatedSizeBytes).rightJustified(10), kind.leftJustified(18),
                        node.isDirectory ? node.path + QLatin1Char('/') : node.path);
        total += node.allocatedSizeBytes;
    }
    out += QStringLiteral("\n%1, %2 on disk.\n")
               .arg(countedItems(static_cast<std::int64_t>(nodes.size())), ByteCountFormatter::format(total));
    printOut(out);
}

} // namespace kestrow::cli
