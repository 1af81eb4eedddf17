#include "scan/ScanEventStream.h"

namespace kestrow {

ScanEventStream::ScanEventStream(Producer producer)
{
    m_thread = std::jthread([this, producer = std::move(producer)](std::stop_token stop) {
        std::exception_ptr error;
        try {
            producer([this](ScanProgressEvent event) { push(std::move(event)); }, stop);
        } catch (...) {
            error = std::current_exception();
        }
        std::lock_guard lock(m_mutex);
        if (!m_cancelled)
            m_error = error;
        m_finished = true;
        m_ready.notify_all();
    });
}

ScanEventStream::~ScanEventStream()
{
    cancel();
}

void ScanEventStream::push(ScanProgressEvent event)
{
    std::lock_guard lock(m_mutex);
    if (m_cancelled)
        return;
    m_events.push_back(std::move(event));
    m_ready.notify_one();
}

std::optional<ScanProgressEvent> ScanEventStream::next()
{
    std::unique_lock lock(m_mutex);
    m_ready.wait(lock, [this] { return !m_events.empty() || m_finished || m_cancelled; });
    if (!m_events.empty()) {
        ScanProgressEvent event = std::move(m_events.front());
        m_events.pop_front();
        return event;
    }
    if (m_error) {
        std::exception_ptr error = std::exchange(m_error, nullptr);
        std::rethrow_exception(error);
    }
    return std::nullopt;
}

void ScanEventStream::cancel()
{
    m_thread.request_stop();
    std::lock_guard lock(m_mutex);
    m_cancelled = true;
    m_events.clear();
    m_error = nullptr;
    m_ready.notify_all();
}

} // namespace kestrow
