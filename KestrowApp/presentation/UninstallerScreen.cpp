#include "presentation/UninstallerScreen.h"

#include "presentation/PlatformWords.h"

namespace kestrow {

std::vector<InstalledApp> UninstallerScreen::filteredApps(const AppState& appState, const QString& search)
{
    std::vector<InstalledApp> apps;
    for (const InstalledApp& app : appState.installedApps())
        if (search.isEmpty() || app.displayName.contains(search, Qt::CaseInsensitive) ||
            app.bundleIdentifier.contains(search, Qt::CaseInsensitive))
            apps.push_back(app);
    return apps;
}

std::vector<AppLeftover> UninstallerScreen::filteredLeftovers(const AppState& appState, const QString& search)
{
    std::vector<AppLeftover> leftovers;
    for (const AppLeftover& leftover : appState.leftovers())
        if (search.isEmpty() || leftover.candidateAppName.contains(search, Qt::CaseInsensitive) ||
            leftover.path.contains(search, Qt::CaseInsensitive))
            leftovers.push_back(leftover);
    return leftovers;
}

UninstallerScreen::State UninstallerScreen::state(const AppState& appState, const QString& search)
{
    if (appState.isLoadingApps() && appState.installedApps().empty())
        return State::loading;
    const bool nothingShown = filteredApps(appState, search).empty() && filteredLeftovers(appState, search).empty();
    if (!search.isEmpty() && nothingShown)
        return State::noMatch;
    if (search.isEmpty() && nothingShown)
        return State::allClean;
    return State::lists;
}

QString UninstallerScreen::appAccessibilityText(const InstalledApp& app)
{
    return app.isProtected ? app.displayName + QStringLiteral(", System") : app.displayName;
}

QString UninstallerScreen::removalTitle(const InstalledApp& app)
{
    return QStringLiteral("Remove ") + app.displayName + QStringLiteral(" and everything it left behind?");
}

QString UninstallerScreen::removalMessage()
{
    return QStringLiteral("Its preferences, caches, and support files go to the Trash too; restorable with ") +
           PlatformWords::current().putBackAction + QLatin1Char('.');
}

} // namespace kestrow
