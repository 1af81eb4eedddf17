#pragma once

#include "state/AppState.h"

#include <QMetaMethod>
#include <QObject>

namespace kestrow {

// Calls `method` of `receiver` (a signal or slot without arguments) on every change the state
// tells of, whichever signal tells it.
void connectEveryChange(AppState& state, QObject* receiver, const QMetaMethod& method);

} // namespace kestrow
