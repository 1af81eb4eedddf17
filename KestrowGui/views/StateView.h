#pragma once

#include "state/AppState.h"

#include <QObject>

namespace kestrow {

// The common ground of the screens' views: each reads the state and tells QML of a change
// through `changed` whenever the state tells of any. Lists are refreshed by the derived views
// on the one signal of the state that concerns each.
class StateView : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)

public:
    explicit StateView(AppState& state, QObject* parent = nullptr);

    [[nodiscard]] bool isBusy() const { return m_state.isBusy(); }

Q_SIGNALS:
    void changed();

protected:
    AppState& m_state;
};

} // namespace kestrow
