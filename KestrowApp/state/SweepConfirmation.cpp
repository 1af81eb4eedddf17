#include "state/SweepConfirmation.h"

#include "presentation/PlatformWords.h"
#include "presentation/Theme.h"

#include <algorithm>
#include <map>

namespace kestrow {

SweepConfirmationRequest SweepConfirmationRequest::forSelection(const std::vector<DiscoveredItem>& selection)
{
    std::int64_t total = 0;
    std::map<StorageCategory, std::int64_t> byCategory;
    for (const DiscoveredItem& item : selection) {
        total += item.allocatedSizeBytes;
        byCategory[item.category] += item.allocatedSizeBytes;
    }
    std::vector<std::pair<StorageCategory, std::int64_t>> groups(byCategory.begin(), byCategory.end());
    std::stable_sort(groups.begin(), groups.end(), [](const auto& a, const auto& b) { return a.second > b.second; });

    QStringList lines;
    for (const auto& [category, bytes] : groups)
        lines.append(category.displayName() + QStringLiteral(": ") + Theme::byteText(bytes));
    lines.append(QString());
    lines.append(QStringLiteral("Everything stays restorable with ") + PlatformWords::current().putBack +
                 QLatin1Char('.'));

    const auto count = static_cast<qsizetype>(selection.size());
    return {.message = QStringLiteral("Move ") + QString::number(count) +
                       (count == 1 ? QStringLiteral(" item (") : QStringLiteral(" items (")) + Theme::byteText(total) +
                       QStringLiteral(") to the Trash?"),
            .body = lines.join(QLatin1Char('\n')),
            .buttons = {QStringLiteral("Move to Trash"), QStringLiteral("Cancel")}};
}

} // namespace kestrow
