#pragma once

#include "storage/ScanProgressEvent.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace kestrow {

// An unbounded stream of scan events fed by a scan on its own thread. The consumer reads
// with `next`; ending the stream early (`cancel`, or destroying it) stops the scan at its
// next check.
class ScanEventStream {
public:
    // `producer` runs on the stream's thread; it yields events through the function it is
    // given and may throw, which ends the stream with that error.
    using Producer = std::function<void(const std::function<void(ScanProgressEvent)>& yield, std::stop_token stop)>;

    explicit ScanEventStream(Producer producer);
    ~ScanEventStream();
    ScanEventStream(const ScanEventStream&) = delete;
    ScanEventStream& operator=(const ScanEventStream&) = delete;

    // The next event, waiting for it; nothing once the stream has finished or was cancelled.
    // A stream that ended with an error rethrows it here, after the events before it.
    [[nodiscard]] std::optional<ScanProgressEvent> next();
    void cancel();

private:
    void push(ScanProgressEvent event);

    std::mutex m_mutex;
    std::condition_variable m_ready;
    std::deque<ScanProgressEvent> m_events;
    bool m_finished = false;
    bool m_cancelled = false; // the consumer has ended the stream: nothing more is delivered
    std::exception_ptr m_error;
    std::jthread m_thread; // last, so that it stops and joins before the rest goes
};

} // namespace kestrow
