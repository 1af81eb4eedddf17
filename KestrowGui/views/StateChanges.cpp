#include "views/StateChanges.h"

namespace kestrow {

void connectEveryChange(AppState& state, QObject* receiver, const QMetaMethod& method)
{
    const QMetaObject& meta = AppState::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            QObject::connect(&state, meta.method(i), receiver, method);
}

} // namespace kestrow
