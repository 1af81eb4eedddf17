#include "presentation/TuneUpModel.h"

#include "system/StartupManager.h"

#include <algorithm>

namespace kestrow {

TuneUpModel::TuneUpModel(AppState& state, std::optional<std::vector<MaintenanceTaskCard>> cards, Toggle toggle,
                         QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_cards(cards ? std::move(*cards) : MaintenanceTaskCard::standardCards(QStringLiteral("/")))
    , m_toggle(toggle ? std::move(toggle)
                      : Toggle([locations = state.startupLocations()](const StartupItem& item, bool enable) {
                            return StartupManager(locations).toggle(item, enable);
                        }))
    , m_runner(*this, 1)
{
}

void TuneUpModel::run(const QString& cardID)
{
    if (m_runningCardID)
        return;
    const auto card = std::find_if(m_cards.begin(), m_cards.end(),
                                   [&](const MaintenanceTaskCard& candidate) { return candidate.id == cardID; });
    if (card == m_cards.end())
        return;
    m_runningCardID = card->id;
    m_taskDidFail = false;
    m_taskStatus = card->runningText;
    Q_EMIT changed();
    m_runner.run<QString>([action = card->action](std::stop_token) { return action(); },
                          [this, title = card->title](FlowOutcome<QString> outcome) {
                              if (outcome.value) {
                                  m_taskStatus = *outcome.value;
                              } else {
                                  m_taskDidFail = true;
                                  m_taskStatus =
                                      QStringLiteral("Could not run ") + title + QStringLiteral(": ") + outcome.error;
                              }
                              m_runningCardID.reset();
                              Q_EMIT changed();
                          });
}

QString TuneUpModel::cardAccessibilityText(const MaintenanceTaskCard& card) const
{
    return m_runningCardID == card.id ? card.title + QStringLiteral(". Running") : card.title;
}

std::optional<QString> TuneUpModel::statusRow() const
{
    if (!m_taskStatus)
        return std::nullopt;
    return QStringLiteral("Status: ") + *m_taskStatus;
}

void TuneUpModel::toggleStartupItem(const StartupItem& item, bool enable)
{
    if (m_toggling.contains(item.id))
        return;
    m_toggling.insert(item.id);
    m_pendingToggles.insert(item.id, enable);
    Q_EMIT changed();
    m_runner.run<QString>([toggle = m_toggle, item, enable](std::stop_token) { return toggle(item, enable); },
                          [this, id = item.id, name = item.name](FlowOutcome<QString> outcome) {
                              if (outcome.value) {
                                  m_state.loadStartupItems(false);
                              } else {
                                  m_taskDidFail = true;
                                  m_taskStatus =
                                      QStringLiteral("Could not toggle ") + name + QStringLiteral(": ") + outcome.error;
                              }
                              m_toggling.remove(id);
                              m_pendingToggles.remove(id);
                              Q_EMIT changed();
                          });
}

bool TuneUpModel::switchPosition(const StartupItem& item) const
{
    return m_pendingToggles.value(item.id, item.isEnabled);
}

QString TuneUpModel::rowAccessibilityText(const StartupItem& item)
{
    static const QString impacts[] = {QStringLiteral("LOW"), QStringLiteral("MEDIUM"), QStringLiteral("HIGH"),
                                      QStringLiteral("UNKNOWN")};
    return item.name + QStringLiteral(", ") + item.type.displayName() + QStringLiteral(", ") +
           impacts[static_cast<std::size_t>(static_cast<StartupImpactValue>(item.impact))] +
           QStringLiteral(" impact, ") + (item.isEnabled ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

} // namespace kestrow
