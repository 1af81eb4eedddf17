#pragma once

#include "state/AppState.h"

#include <QString>

#include <vector>

namespace kestrow {

// What the Uninstaller screen shows for a search text.
class UninstallerScreen {
public:
    enum class State { loading, noMatch, allClean, lists };

    // Where the text occurs in the name or identifier, ignoring case; all for an empty text.
    [[nodiscard]] static std::vector<InstalledApp> filteredApps(const AppState& appState, const QString& search);
    // Where the text occurs in the application's name or the path.
    [[nodiscard]] static std::vector<AppLeftover> filteredLeftovers(const AppState& appState, const QString& search);
    [[nodiscard]] static State state(const AppState& appState, const QString& search);
    // Protected applications have no Remove button.
    [[nodiscard]] static bool canRemove(const InstalledApp& app) { return !app.isProtected; }
    [[nodiscard]] static QString appAccessibilityText(const InstalledApp& app);
    [[nodiscard]] static QString removalTitle(const InstalledApp& app);
    [[nodiscard]] static QString removalMessage();
};

} // namespace kestrow
