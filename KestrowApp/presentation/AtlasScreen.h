#pragma once

#include "analysis/SpaceNode.h"
#include "state/AppState.h"

#include <QString>

#include <optional>

namespace kestrow {

// What the Atlas screen shows of the folder map.
class AtlasScreen {
public:
    enum class State { surveying, noMap, map };

    // The folder on screen: the top of the stack, or the survey's root.
    [[nodiscard]] static std::optional<SpaceNode> currentRoot(const AppState& appState);
    [[nodiscard]] static State state(const AppState& appState);
    // "Home" for the survey's root, the folder's name below it.
    [[nodiscard]] static QString crumbTitle(const AppState& appState, int index);
    // A child's share of its folder, 0 for an empty folder and never above 1.
    [[nodiscard]] static double fraction(const SpaceNode& child, std::int64_t rootSize);
    [[nodiscard]] static QString rowAccessibilityText(const SpaceNode& child, std::int64_t rootSize);
};

} // namespace kestrow
