#include "models/InstalledAppsModel.h"

#include "presentation/UninstallerScreen.h"

namespace kestrow {

namespace {

QString detailOf(const InstalledApp& app)
{
    const QString version = app.shortVersion.value_or(app.version);
    return version.isEmpty() ? app.formattedBundleSize() : version + QStringLiteral(" · ") + app.formattedBundleSize();
}

} // namespace

InstalledAppsModel::InstalledAppsModel(QObject* parent)
    : RecordListModel(
          {{"name", [](const InstalledApp& app) { return QVariant(app.displayName); }},
           {"detail", [](const InstalledApp& app) { return QVariant(detailOf(app)); }},
           {"iconSource", [](const InstalledApp& app) { return QVariant(app.iconURL().value_or(QString())); }},
           {"canRemove", [](const InstalledApp& app) { return QVariant(UninstallerScreen::canRemove(app)); }},
           {"accessibleText",
            [](const InstalledApp& app) { return QVariant(UninstallerScreen::appAccessibilityText(app)); }}},
          parent)
{
}

} // namespace kestrow
