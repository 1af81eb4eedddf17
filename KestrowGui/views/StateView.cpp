#include "views/StateView.h"

#include "views/StateChanges.h"

namespace kestrow {

StateView::StateView(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state)
{
    connectEveryChange(state, this, QMetaMethod::fromSignal(&StateView::changed));
}

} // namespace kestrow
