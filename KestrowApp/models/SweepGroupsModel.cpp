#include "models/SweepGroupsModel.h"

#include "presentation/RiskPill.h"
#include "presentation/Theme.h"

namespace kestrow {

SweepGroupsModel::SweepGroupsModel(QObject* parent)
    : RecordListModel(
          {{"name", [](const SweepGroup& group) { return QVariant(group.name); }},
           {"hint", [](const SweepGroup& group) { return QVariant(group.hint); }},
           {"pillText", [](const SweepGroup& group) { return QVariant(RiskPill::forTier(group.risk).text); }},
           {"pillColor",
            [](const SweepGroup& group) { return QVariant(colorName(RiskPill::forTier(group.risk).color)); }},
           {"sizeText", [](const SweepGroup& group) { return QVariant(Theme::byteText(group.bytes)); }}},
          parent)
{
}

} // namespace kestrow
