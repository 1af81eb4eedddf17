#pragma once

#include "models/InstalledAppsModel.h"
#include "models/LeftoversModel.h"
#include "views/StateView.h"

namespace kestrow {

// What the Uninstaller screen shows for its search text, and its removals.
class UninstallView : public StateView {
    Q_OBJECT
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY changed)
    Q_PROPERTY(QString screenState READ screenState NOTIFY changed)
    Q_PROPERTY(QObject* apps READ apps CONSTANT)
    Q_PROPERTY(QObject* leftovers READ leftovers CONSTANT)
    Q_PROPERTY(int appCount READ appCount NOTIFY changed)
    Q_PROPERTY(int leftoverCount READ leftoverCount NOTIFY changed)
    Q_PROPERTY(QString removalMessage READ removalMessage CONSTANT)

public:
    explicit UninstallView(AppState& state, QObject* parent = nullptr);

    [[nodiscard]] const QString& search() const { return m_search; }
    void setSearch(const QString& search);
    // "loading", "noMatch", "allClean" or "lists".
    [[nodiscard]] QString screenState() const;
    [[nodiscard]] QObject* apps() { return &m_apps; }
    [[nodiscard]] QObject* leftovers() { return &m_leftovers; }
    [[nodiscard]] int appCount() const { return m_apps.rowCount(); }
    [[nodiscard]] int leftoverCount() const { return m_leftovers.rowCount(); }
    [[nodiscard]] static QString removalMessage();

    // The screen came into view: an empty inventory is filled.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void loadApps();
    // Every orphan the search shows.
    Q_INVOKABLE void sweepAllOrphans();
    Q_INVOKABLE void sweepOrphan(int row);
    Q_INVOKABLE [[nodiscard]] QString removalTitle(int row) const;
    Q_INVOKABLE void uninstall(int row);

private:
    void refreshLists();

    QString m_search;
    InstalledAppsModel m_apps;
    LeftoversModel m_leftovers;
};

} // namespace kestrow
