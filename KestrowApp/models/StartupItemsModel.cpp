#include "models/StartupItemsModel.h"

#include "platform/NativePath.h"
#include "presentation/TuneUpModel.h"

namespace kestrow {

StartupItemsModel::StartupItemsModel(SwitchPosition position, QObject* parent)
    : RecordListModel({{"name", [](const StartupItem& item) { return QVariant(item.name); }},
                       {"path",
                        [](const StartupItem& item) {
                            return QVariant(NativePath::displayText(
                                item.fileURL.value_or(item.targetExecutablePath.value_or(QString()))));
                        }},
                       {"typeText", [](const StartupItem& item) { return QVariant(item.type.displayName()); }},
                       {"impactText", [](const StartupItem& item) { return QVariant(item.impact.rawValue()); }},
                       {"switchOn", [position](const StartupItem& item) { return QVariant(position(item)); }},
                       {"accessibleText",
                        [](const StartupItem& item) { return QVariant(TuneUpModel::rowAccessibilityText(item)); }}},
                      parent)
{
}

void StartupItemsModel::switchesChanged()
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

} // namespace kestrow
