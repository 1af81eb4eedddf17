#include "analysis/BoundedTaskPool.h"

#include "platform/SystemSource.h"

#include <algorithm>
#include <system_error>

namespace kestrow {

BoundedTaskPool::BoundedTaskPool(std::size_t threads)
    : m_threads(threads > 0 ? threads
                            : static_cast<std::size_t>(std::max(1, SystemSource::current()->activeProcessorCount())))
    , m_idle(m_threads - 1)
{
    m_helpers.reserve(m_threads - 1);
}

BoundedTaskPool::~BoundedTaskPool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
    }
    m_changed.notify_all();
}

void BoundedTaskPool::run(const Task& first)
{
    runGuarded(first);
    {
        const std::lock_guard lock(m_mutex);
        ++m_idle;
    }
    serve();
    for (std::jthread& helper : m_helpers)
        helper.join();
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void BoundedTaskPool::submit(Task task)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_over && m_queue.size() < m_idle.load()) {
            m_queue.push_back(std::move(task));
            if (m_waiting > 0) {
                m_changed.notify_one();
                return;
            }
            if (m_helpers.size() + 1 < m_threads) {
                try {
                    m_helpers.emplace_back([this] { serve(); });
                } catch (const std::system_error&) {
                    // No thread to be had: a thread already running takes the task when it is free.
                }
            }
            return;
        }
    }
    runGuarded(task);
}

void BoundedTaskPool::serve()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        if (!m_queue.empty()) {
            const Task task = std::move(m_queue.front());
            m_queue.pop_front();
            --m_idle;
            lock.unlock();
            runGuarded(task);
            lock.lock();
            ++m_idle;
            continue;
        }
        if (m_over || m_idle.load() == m_threads) {
            // Nothing runs and nothing waits: all is done.
            m_over = true;
            m_changed.notify_all();
            return;
        }
        ++m_waiting;
        m_changed.wait(lock);
        --m_waiting;
    }
}

void BoundedTaskPool::runGuarded(const Task& task)
{
    try {
        task();
    } catch (...) {
        const std::lock_guard lock(m_mutex);
        if (!m_failure)
            m_failure = std::current_exception();
    }
}

} // namespace kestrow
