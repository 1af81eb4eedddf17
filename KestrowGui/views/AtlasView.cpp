#include "views/AtlasView.h"

#include "presentation/AtlasScreen.h"

namespace kestrow {

AtlasView::AtlasView(AppState& state, QObject* parent)
    : StateView(state, parent)
{
    const auto refreshRows = [this] { m_rows.setFolder(AtlasScreen::currentRoot(m_state)); };
    connect(&state, &AppState::atlasStackChanged, this, refreshRows);
    connect(&state, &AppState::spaceRootNodeChanged, this, refreshRows);
    refreshRows();
}

QString AtlasView::screenState() const
{
    switch (AtlasScreen::state(m_state)) {
    case AtlasScreen::State::surveying:
        return QStringLiteral("surveying");
    case AtlasScreen::State::noMap:
        return QStringLiteral("noMap");
    case AtlasScreen::State::map:
        break;
    }
    return QStringLiteral("map");
}

QVariantList AtlasView::crumbs() const
{
    QVariantList crumbs;
    const int count = static_cast<int>(m_state.atlasStack().size());
    for (int index = 0; index < count; ++index)
        crumbs.append(QVariantMap{{QStringLiteral("title"), AtlasScreen::crumbTitle(m_state, index)},
                                  {QStringLiteral("isLast"), index == count - 1}});
    return crumbs;
}

void AtlasView::appear()
{
    if (!m_state.spaceRootNode())
        m_state.loadSpaceLens();
}

void AtlasView::loadSpaceLens()
{
    m_state.loadSpaceLens();
}

void AtlasView::drillIn(int row)
{
    if (m_rows.hasRow(row) && m_rows.record(row).isDirectory)
        m_state.drillInAtlas(m_rows.record(row));
}

void AtlasView::drillOut()
{
    m_state.drillOutAtlas();
}

void AtlasView::drillTo(int index)
{
    m_state.drillToAtlas(index);
}

} // namespace kestrow
