#include "views/TuneUpView.h"

#include "presentation/PlatformWords.h"

namespace kestrow {

TuneUpView::TuneUpView(AppState& state, TuneUpModel& model, QObject* parent)
    : StateView(state, parent)
    , m_model(model)
    , m_items([&model](const StartupItem& item) { return model.switchPosition(item); })
{
    const auto refreshItems = [this] { m_items.setRecords(m_state.startupItems()); };
    connect(&state, &AppState::startupItemsChanged, this, refreshItems);
    connect(&model, &TuneUpModel::changed, this, [this] {
        m_items.switchesChanged();
        Q_EMIT changed();
    });
    refreshItems();
}

QVariantList TuneUpView::cards() const
{
    QVariantList cards;
    for (const MaintenanceTaskCard& card : m_model.taskCards())
        cards.append(QVariantMap{{QStringLiteral("id"), card.id},
                                 {QStringLiteral("section"), card.section},
                                 {QStringLiteral("title"), card.title},
                                 {QStringLiteral("detail"), card.detail},
                                 {QStringLiteral("icon"), card.icon},
                                 {QStringLiteral("accessibleText"), m_model.cardAccessibilityText(card)},
                                 {QStringLiteral("running"), m_model.runningCardID() == card.id}});
    return cards;
}

QString TuneUpView::startupState() const
{
    if (m_state.isLoadingStartup() && m_state.startupItems().empty())
        return QStringLiteral("loading");
    return m_state.startupItems().empty() ? QStringLiteral("empty") : QStringLiteral("rows");
}

QString TuneUpView::emptyDetail()
{
    return PlatformWords::current().noStartupItemsDetail;
}

void TuneUpView::appear()
{
    if (m_state.startupItems().empty())
        m_state.loadStartupItems(true);
}

void TuneUpView::refresh()
{
    m_state.loadStartupItems(true);
}

void TuneUpView::run(const QString& cardID)
{
    m_model.run(cardID);
}

void TuneUpView::toggle(int row, bool enable)
{
    if (m_items.hasRow(row))
        m_model.toggleStartupItem(m_items.record(row), enable);
}

} // namespace kestrow
