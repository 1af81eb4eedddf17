#pragma once

#include "models/CategoryRowsModel.h"
#include "presentation/RiskFilter.h"
#include "views/StateView.h"

#include <QStringList>

namespace kestrow {

// What the Sweep screen shows under its risk filter, which is the screen's own.
class SweepView : public StateView {
    Q_OBJECT
    Q_PROPERTY(QStringList filters READ filters CONSTANT)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)
    Q_PROPERTY(QString screenState READ screenState NOTIFY changed)
    Q_PROPERTY(QString rowsState READ rowsState NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    Q_PROPERTY(QString totalAccessibleText READ totalAccessibleText NOTIFY changed)
    Q_PROPERTY(QObject* rows READ rows CONSTANT)

public:
    explicit SweepView(AppState& state, QObject* parent = nullptr);

    [[nodiscard]] static QStringList filters();
    [[nodiscard]] QString filter() const { return m_filter.rawValue(); }
    // One of `filters`; anything else is ignored.
    void setFilter(const QString& raw);
    // "scanning", "noScan" or "rows".
    [[nodiscard]] QString screenState() const;
    // "handsOff", "nothingMatches" or "rows".
    [[nodiscard]] QString rowsState() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString totalAccessibleText() const;
    [[nodiscard]] QObject* rows() { return &m_rows; }

    Q_INVOKABLE void runSmartScan();

private:
    void refreshRows();

    RiskFilter m_filter = RiskFilter::all;
    CategoryRowsModel m_rows;
};

} // namespace kestrow
