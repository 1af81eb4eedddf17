#include "models/LeftoversModel.h"

#include "platform/NativePath.h"
#include "presentation/Theme.h"

namespace kestrow {

LeftoversModel::LeftoversModel(QObject* parent)
    : RecordListModel(
          {{"name", [](const AppLeftover& leftover) { return QVariant(leftover.candidateAppName); }},
           {"path", [](const AppLeftover& leftover) { return QVariant(NativePath::displayText(leftover.path)); }},
           {"sizeText",
            [](const AppLeftover& leftover) { return QVariant(Theme::byteText(leftover.allocatedSizeBytes)); }},
           {"accessibleText",
            [](const AppLeftover& leftover) {
                return QVariant(QStringLiteral("Sweep ") + leftover.candidateAppName + QStringLiteral(" orphan"));
            }}},
          parent)
{
}

} // namespace kestrow
