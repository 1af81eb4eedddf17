#pragma once

#include "presentation/MaintenanceTaskCard.h"
#include "state/AppState.h"
#include "state/FlowRunner.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace kestrow {

// The Tune-Up screen's own state: one quick task at a time with its status line, and the
// launch item switches, each showing its new position while its change is under way.
class TuneUpModel : public QObject {
    Q_OBJECT

public:
    // Turns a launch item on or off and returns the system's text; may throw.
    using Toggle = std::function<QString(const StartupItem& item, bool enable)>;

    // Absent cards and toggle: the standard cards on "/" and the startup manager of the state.
    TuneUpModel(AppState& state, std::optional<std::vector<MaintenanceTaskCard>> cards = std::nullopt,
                Toggle toggle = {}, QObject* parent = nullptr);

    [[nodiscard]] const std::vector<MaintenanceTaskCard>& taskCards() const { return m_cards; }
    [[nodiscard]] const std::optional<QString>& taskStatus() const { return m_taskStatus; }
    [[nodiscard]] bool taskDidFail() const { return m_taskDidFail; }
    [[nodiscard]] const std::optional<QString>& runningCardID() const { return m_runningCardID; }
    [[nodiscard]] const QSet<QUuid>& toggling() const { return m_toggling; }
    [[nodiscard]] const QHash<QUuid, bool>& pendingToggles() const { return m_pendingToggles; }

    // Ignored while any card runs.
    void run(const QString& cardID);
    [[nodiscard]] bool canRun() const { return !m_state.isBusy() && !m_runningCardID; }
    [[nodiscard]] QString cardAccessibilityText(const MaintenanceTaskCard& card) const;
    // "Status: " and the last task's text; absent before the first.
    [[nodiscard]] std::optional<QString> statusRow() const;

    // Ignored while the item's change is under way.
    void toggleStartupItem(const StartupItem& item, bool enable);
    // The position the item's switch shows.
    [[nodiscard]] bool switchPosition(const StartupItem& item) const;
    [[nodiscard]] static QString rowAccessibilityText(const StartupItem& item);

Q_SIGNALS:
    void changed();

private:
    AppState& m_state;
    std::vector<MaintenanceTaskCard> m_cards;
    Toggle m_toggle;
    std::optional<QString> m_taskStatus;
    bool m_taskDidFail = false;
    std::optional<QString> m_runningCardID;
    QSet<QUuid> m_toggling;
    QHash<QUuid, bool> m_pendingToggles;
    FlowRunner m_runner;
};

} // namespace kestrow
