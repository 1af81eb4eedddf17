#include "models/CategoryRowsModel.h"

#include "presentation/RiskPill.h"
#include "presentation/SweepScreen.h"
#include "presentation/Theme.h"

namespace kestrow {

CategoryRowsModel::CategoryRowsModel(QObject* parent)
    : RecordListModel(
          {{"name", [](const CategorySummary& row) { return QVariant(row.category.displayName()); }},
           {"symbol", [](const CategorySummary& row) { return QVariant(SweepScreen::rowIcon(row.category)); }},
           {"countText", [](const CategorySummary& row) { return QVariant(SweepScreen::itemCountText(row)); }},
           {"pillText", [](const CategorySummary& row) { return QVariant(RiskPill::forTier(row.riskTier).text); }},
           {"pillColor",
            [](const CategorySummary& row) { return QVariant(colorName(RiskPill::forTier(row.riskTier).color)); }},
           {"sizeText", [](const CategorySummary& row) { return QVariant(Theme::byteText(row.totalAllocatedBytes)); }},
           {"accessibleText",
            [](const CategorySummary& row) { return QVariant(SweepScreen::rowAccessibilityText(row)); }}},
          parent)
{
}

} // namespace kestrow
