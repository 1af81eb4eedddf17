#include "views/SweepView.h"

#include "presentation/SweepScreen.h"
#include "presentation/Theme.h"

namespace kestrow {

SweepView::SweepView(AppState& state, QObject* parent)
    : StateView(state, parent)
{
    connect(&state, &AppState::scanResultChanged, this, &SweepView::refreshRows);
    refreshRows();
}

QStringList SweepView::filters()
{
    QStringList raws;
    for (const RiskFilter filter : RiskFilter::allCases())
        raws.append(filter.rawValue());
    return raws;
}

void SweepView::setFilter(const QString& raw)
{
    for (const RiskFilter filter : RiskFilter::allCases())
        if (filter.rawValue() == raw && filter != m_filter) {
            m_filter = filter;
            refreshRows();
            Q_EMIT changed();
        }
}

QString SweepView::screenState() const
{
    switch (SweepScreen::state(m_state)) {
    case SweepScreen::State::scanning:
        return QStringLiteral("scanning");
    case SweepScreen::State::noScan:
        return QStringLiteral("noScan");
    case SweepScreen::State::rows:
        break;
    }
    return QStringLiteral("rows");
}

QString SweepView::rowsState() const
{
    switch (SweepScreen::rows(m_state.scanResult(), m_filter)) {
    case SweepScreen::Rows::handsOff:
        return QStringLiteral("handsOff");
    case SweepScreen::Rows::nothingMatches:
        return QStringLiteral("nothingMatches");
    case SweepScreen::Rows::rows:
        break;
    }
    return QStringLiteral("rows");
}

QString SweepView::totalText() const
{
    return Theme::byteText(SweepScreen::totalBytes(m_rows.records()));
}

QString SweepView::totalAccessibleText() const
{
    return SweepScreen::totalAccessibilityText(m_rows.records());
}

void SweepView::runSmartScan()
{
    m_state.runSmartScan();
}

void SweepView::refreshRows()
{
    m_rows.setRecords(SweepScreen::filteredRows(m_state.scanResult(), m_filter));
}

} // namespace kestrow
