#pragma once

#include "models/StartupItemsModel.h"
#include "presentation/TuneUpModel.h"
#include "views/StateView.h"

#include <QVariantList>

namespace kestrow {

// What the Tune-Up screen shows: its quick task cards and the launch items with their switches.
class TuneUpView : public StateView {
    Q_OBJECT
    // id, section, title, detail, icon, accessibleText, running
    Q_PROPERTY(QVariantList cards READ cards NOTIFY changed)
    Q_PROPERTY(bool canRun READ canRun NOTIFY changed)
    Q_PROPERTY(QString statusRow READ statusRow NOTIFY changed)
    Q_PROPERTY(bool taskDidFail READ taskDidFail NOTIFY changed)
    Q_PROPERTY(QString startupState READ startupState NOTIFY changed)
    Q_PROPERTY(int itemCount READ itemCount NOTIFY changed)
    Q_PROPERTY(QString emptyDetail READ emptyDetail CONSTANT)
    Q_PROPERTY(QObject* items READ items CONSTANT)

public:
    TuneUpView(AppState& state, TuneUpModel& model, QObject* parent = nullptr);

    [[nodiscard]] QVariantList cards() const;
    [[nodiscard]] bool canRun() const { return m_model.canRun(); }
    [[nodiscard]] QString statusRow() const { return m_model.statusRow().value_or(QString()); }
    [[nodiscard]] bool taskDidFail() const { return m_model.taskDidFail(); }
    // "loading", "empty" or "rows".
    [[nodiscard]] QString startupState() const;
    [[nodiscard]] int itemCount() const { return m_items.rowCount(); }
    [[nodiscard]] static QString emptyDetail();
    [[nodiscard]] QObject* items() { return &m_items; }

    // The screen came into view: an empty list is read.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void run(const QString& cardID);
    Q_INVOKABLE void toggle(int row, bool enable);

private:
    TuneUpModel& m_model;
    StartupItemsModel m_items;
};

} // namespace kestrow
