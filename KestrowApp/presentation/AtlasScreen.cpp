#include "presentation/AtlasScreen.h"

#include "presentation/Theme.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

std::optional<SpaceNode> AtlasScreen::currentRoot(const AppState& appState)
{
    if (!appState.atlasStack().empty())
        return appState.atlasStack().back();
    return appState.spaceRootNode();
}

AtlasScreen::State AtlasScreen::state(const AppState& appState)
{
    const bool hasRoot = currentRoot(appState).has_value();
    if (appState.isAnalyzingSpace() && !hasRoot)
        return State::surveying;
    return hasRoot ? State::map : State::noMap;
}

QString AtlasScreen::crumbTitle(const AppState& appState, int index)
{
    return index == 0 ? QStringLiteral("Home") : appState.atlasStack().at(static_cast<std::size_t>(index)).name;
}

double AtlasScreen::fraction(const SpaceNode& child, std::int64_t rootSize)
{
    if (rootSize < 1)
        return 0;
    return std::min(static_cast<double>(child.allocatedSizeBytes) / static_cast<double>(rootSize), 1.0);
}

QString AtlasScreen::rowAccessibilityText(const SpaceNode& child, std::int64_t rootSize)
{
    return (child.isDirectory ? QStringLiteral("folder ") : QStringLiteral("file ")) + child.name +
           QStringLiteral(", ") + Theme::byteText(child.allocatedSizeBytes) + QStringLiteral(", ") +
           QString::number(std::lround(fraction(child, rootSize) * 100)) + QStringLiteral(" percent");
}

} // namespace kestrow
