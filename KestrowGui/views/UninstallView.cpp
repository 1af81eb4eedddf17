#include "views/UninstallView.h"

#include "presentation/UninstallerScreen.h"

namespace kestrow {

UninstallView::UninstallView(AppState& state, QObject* parent)
    : StateView(state, parent)
{
    connect(&state, &AppState::installedAppsChanged, this, &UninstallView::refreshLists);
    connect(&state, &AppState::leftoversChanged, this, &UninstallView::refreshLists);
    refreshLists();
}

void UninstallView::setSearch(const QString& search)
{
    if (search == m_search)
        return;
    m_search = search;
    refreshLists();
    Q_EMIT changed();
}

QString UninstallView::screenState() const
{
    switch (UninstallerScreen::state(m_state, m_search)) {
    case UninstallerScreen::State::loading:
        return QStringLiteral("loading");
    case UninstallerScreen::State::noMatch:
        return QStringLiteral("noMatch");
    case UninstallerScreen::State::allClean:
        return QStringLiteral("allClean");
    case UninstallerScreen::State::lists:
        break;
    }
    return QStringLiteral("lists");
}

QString UninstallView::removalMessage()
{
    return UninstallerScreen::removalMessage();
}

void UninstallView::appear()
{
    if (m_state.installedApps().empty())
        m_state.loadApps();
}

void UninstallView::loadApps()
{
    m_state.loadApps();
}

void UninstallView::sweepAllOrphans()
{
    m_state.cleanLeftovers(m_leftovers.records());
}

void UninstallView::sweepOrphan(int row)
{
    if (m_leftovers.hasRow(row))
        m_state.cleanLeftovers({m_leftovers.record(row)});
}

QString UninstallView::removalTitle(int row) const
{
    return m_apps.hasRow(row) ? UninstallerScreen::removalTitle(m_apps.record(row)) : QString();
}

void UninstallView::uninstall(int row)
{
    if (m_apps.hasRow(row) && UninstallerScreen::canRemove(m_apps.record(row)))
        m_state.uninstall(m_apps.record(row));
}

void UninstallView::refreshLists()
{
    m_apps.setRecords(UninstallerScreen::filteredApps(m_state, m_search));
    m_leftovers.setRecords(UninstallerScreen::filteredLeftovers(m_state, m_search));
}

} // namespace kestrow
