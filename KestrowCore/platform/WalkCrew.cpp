#include "platform/WalkCrew.h"

#include <algorithm>
#include <system_error>

namespace kestrow {

WalkCrew::WalkCrew(std::size_t threads, std::stop_token stop)
    : m_threads(std::max<std::size_t>(threads, 1))
    , m_idle(m_threads - 1)
    , m_outerStop(std::move(stop), [this] { end(); })
{
    m_helpers.reserve(m_threads - 1);
}

WalkCrew::~WalkCrew()
{
    end();
}

bool WalkCrew::run(UniqueFd root, std::string path, const Walk& walk)
{
    m_walk = &walk;
    if (!walk(0, std::move(root), std::move(path)))
        end();
    {
        const std::lock_guard lock(m_mutex);
        m_idle.fetch_add(1, std::memory_order_relaxed);
    }
    serve(0);
    // Once ended, no helper starts any more, so the list holds still.
    for (std::jthread& helper : m_helpers)
        helper.join();
    return !m_stop.stop_requested();
}

bool WalkCrew::handOver(UniqueFd& folder, std::string_view path)
{
    const std::lock_guard lock(m_mutex);
    if (m_ended || m_queue.size() >= m_idle.load(std::memory_order_relaxed))
        return false;
    m_queue.push_back({std::move(folder), std::string(path)});
    m_queued.store(m_queue.size(), std::memory_order_relaxed);
    if (m_waiting > 0) {
        m_changed.notify_one();
    } else if (m_helpers.size() + 1 < m_threads) {
        try {
            const std::size_t worker = m_helpers.size() + 1;
            m_helpers.emplace_back([this, worker] { serve(worker); });
        } catch (const std::system_error&) {
            // No thread to be had: the threads already walking take the folder later.
        }
    }
    return true;
}

void WalkCrew::serve(std::size_t worker)
{
    std::unique_lock lock(m_mutex);
    while (!m_ended) {
        if (!m_queue.empty()) {
            Task task = std::move(m_queue.front());
            m_queue.pop_front();
            m_queued.store(m_queue.size(), std::memory_order_relaxed);
            m_idle.fetch_sub(1, std::memory_order_relaxed);
            lock.unlock();
            if (!(*m_walk)(worker, std::move(task.folder), std::move(task.path)))
                end();
            lock.lock();
            m_idle.fetch_add(1, std::memory_order_relaxed);
            continue;
        }
        if (m_idle.load(std::memory_order_relaxed) == m_threads) {
            // Nobody walks and nothing waits: the walk is over.
            m_changed.notify_all();
            return;
        }
        ++m_waiting;
        m_changed.wait(lock);
        --m_waiting;
    }
}

void WalkCrew::end()
{
    m_stop.request_stop();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
}

} // namespace kestrow
