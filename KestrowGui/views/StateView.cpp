#include "views/StateView.h"

#include <QMetaMethod>

namespace kestrow {

StateView::StateView(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state)
{
    const QMetaObject& meta = AppState::staticMetaObject;
    const QMetaMethod relay = QMetaMethod::fromSignal(&StateView::changed);
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            connect(&state, meta.method(i), this, relay);
}

} // namespace kestrow
