#include "platform/WalkCrew.h"

#include <system_error>

namespace kestrow {

WalkCrew::WalkCrew(std::size_t helpers, std::stop_token stop)
    : m_helpers(helpers)
    , m_idle(helpers)
    , m_outerStop(std::move(stop), [this] { end(); })
{
    m_threads.reserve(m_helpers);
}

WalkCrew::~WalkCrew()
{
    end();
}

void WalkCrew::start(Job& job)
{
    const std::lock_guard lock(m_mutex);
    if (m_ended) {
        job.m_ended = true;
        return;
    }
    ++job.m_pending;
    queue({&job, {}, {}}, true);
}

bool WalkCrew::wait(Job& job, std::size_t worker, bool takesStarts)
{
    std::unique_lock lock(m_mutex);
    m_idle.fetch_add(1, std::memory_order_relaxed);
    serve(lock, worker, &job, takesStarts);
    m_idle.fetch_sub(1, std::memory_order_relaxed);
    return !job.m_ended && !m_ended;
}

bool WalkCrew::isOver(const Job& job)
{
    const std::lock_guard lock(m_mutex);
    return job.m_pending == 0;
}

void WalkCrew::end(Job& job)
{
    const std::lock_guard lock(m_mutex);
    job.m_ended = true;
}

bool WalkCrew::handOver(Job& job, UniqueFd& folder, std::string_view path)
{
    const std::lock_guard lock(m_mutex);
    if (m_ended || m_folders.size() + m_starts.size() >= m_idle.load(std::memory_order_relaxed))
        return false;
    ++job.m_pending;
    queue({&job, std::move(folder), std::string(path)}, false);
    return true;
}

void WalkCrew::queue(Task task, bool isStart)
{
    (isStart ? m_starts : m_folders).push_back(std::move(task));
    m_queued.store(m_folders.size() + m_starts.size(), std::memory_order_relaxed);
    // Any thread takes a folder; a start wants one that is not inside a walk of its own.
    if (m_waiting > 0) {
        if (isStart)
            m_changed.notify_all();
        else
            m_changed.notify_one();
    }
    if ((isStart || m_waiting == 0) && m_threads.size() < m_helpers) {
        try {
            const std::size_t worker = m_threads.size() + 1;
            m_threads.emplace_back([this, worker] {
                std::unique_lock lock(m_mutex);
                serve(lock, worker, nullptr, true);
            });
        } catch (const std::system_error&) {
            // No thread to be had: the threads already walking take the task later.
        }
    }
}

void WalkCrew::serve(std::unique_lock<std::mutex>& lock, std::size_t worker, Job* until, bool takesStarts)
{
    // Once ended, a helper leaves; a wait still lasts until what is being walked of its job is
    // over, since the walk refers to the job.
    while (until ? until->m_pending > 0 : !m_ended) {
        std::deque<Task>* tasks = !m_folders.empty()                 ? &m_folders
                                  : takesStarts && !m_starts.empty() ? &m_starts
                                                                     : nullptr;
        if (!tasks) {
            ++m_waiting;
            m_changed.wait(lock);
            --m_waiting;
            continue;
        }
        Task task = std::move(tasks->front());
        tasks->pop_front();
        m_queued.store(m_folders.size() + m_starts.size(), std::memory_order_relaxed);
        m_idle.fetch_sub(1, std::memory_order_relaxed);
        const bool skip = task.job->m_ended;
        lock.unlock();
        const bool goOn = skip || task.job->walk(worker, std::move(task.folder), std::move(task.path));
        lock.lock();
        m_idle.fetch_add(1, std::memory_order_relaxed);
        if (!goOn)
            task.job->m_ended = true;
        if (--task.job->m_pending == 0)
            m_changed.notify_all();
    }
}

void WalkCrew::end()
{
    m_stop.request_stop();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    // What waits in the queue is dropped; its jobs learn it through their counts.
    for (std::deque<Task>* tasks : {&m_folders, &m_starts}) {
        for (Task& task : *tasks) {
            task.job->m_ended = true;
            --task.job->m_pending;
        }
        tasks->clear();
    }
    m_queued.store(0, std::memory_order_relaxed);
    m_changed.notify_all();
}

} // namespace kestrow
