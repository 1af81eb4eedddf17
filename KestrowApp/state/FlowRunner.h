#pragma once

#include "state/FlowOutcome.h"

#include <QMetaObject>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <stop_token>

namespace kestrow {

// Runs the work of the application's flows on a few worker threads and hands each outcome
// back on the thread of `context`, through its event loop. Going away stops what still runs,
// waits for it, and drops the outcomes not yet handed back, so that no work outlives its
// owner.
class FlowRunner {
public:
    FlowRunner(QObject& context, int threads);
    ~FlowRunner();
    FlowRunner(const FlowRunner&) = delete;
    FlowRunner& operator=(const FlowRunner&) = delete;

    // `work` runs on a worker with the runner's stop token; `publish` then runs on the
    // context's thread unless the context is gone.
    template <typename T> void run(std::function<T(std::stop_token)> work, std::function<void(FlowOutcome<T>)> publish)
    {
        ++m_pending;
        m_pool.start([this, work = std::move(work), publish = std::move(publish), stop = m_stop.get_token()] {
            auto outcome = std::make_shared<FlowOutcome<T>>(FlowOutcome<T>::attempt([&] { return work(stop); }));
            QMetaObject::invokeMethod(
                &m_context,
                [this, outcome, publish] {
                    --m_pending;
                    publish(std::move(*outcome));
                },
                Qt::QueuedConnection);
        });
    }

    // True when no work is running or waiting to be handed back.
    [[nodiscard]] bool isIdle() const { return m_pending == 0; }

private:
    QObject& m_context;
    std::stop_source m_stop;
    int m_pending = 0; // touched on the context's thread only
    QThreadPool m_pool;
};

} // namespace kestrow
