#pragma once

#include "platform/UniqueFd.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrow {

// Threads that share out walks: the folders that walkers hand each other, and whole walks
// queued to start when a thread is free. A walker that meets a sub-folder while a thread is
// idle hands it over, otherwise it goes down itself, so that the queue stays short and the
// open folders few; while walks wait to start, nobody is idle and each thread walks one of its
// own. The crew's helper threads start only when there is work for them. Thread 0 is the one
// that calls `wait`; the helpers are 1 to `helpers`.
class WalkCrew {
public:
    // One walk that the crew's threads share.
    class Job {
    public:
        virtual ~Job() = default;
        // Walks `folder` at `path`, a part of this job's tree, on the crew's thread `worker`;
        // false ends the job. Without a folder, the job's start, which walks its root.
        virtual bool walk(std::size_t worker, UniqueFd folder, std::string path) = 0;

    private:
        friend class WalkCrew;
        std::size_t m_pending = 0; // folders and starts queued or being walked
        bool m_ended = false;
    };

    // A stop requested on `stop` ends every walk of the crew.
    WalkCrew(std::size_t helpers, std::stop_token stop);
    ~WalkCrew();
    WalkCrew(const WalkCrew&) = delete;
    WalkCrew& operator=(const WalkCrew&) = delete;

    // The numbers a worker can have: 0 and the helpers.
    [[nodiscard]] std::size_t workers() const { return m_helpers + 1; }
    // What each walker tests between entries: ended by the caller or by `stop`.
    [[nodiscard]] std::stop_token stopToken() const { return m_stop.get_token(); }

    // Queues the start of `job`, to be walked by a helper when one is free. The job must stay
    // until it is over; `wait` tells when.
    void start(Job& job);
    // Returns when all of `job` was walked, walking handed-over folders meanwhile as thread
    // `worker` (0 on a thread of the caller's own, or the helper's own number inside a start),
    // and with `takesStarts` the starts of other jobs too: for a thread that is inside no walk
    // of its own. False when the job or the crew was ended.
    bool wait(Job& job, std::size_t worker, bool takesStarts = false);
    // Whether all of `job` was walked.
    [[nodiscard]] bool isOver(const Job& job);
    // Ends `job`: what is queued of it is dropped, what is being walked goes on to its end.
    void end(Job& job);

    // Whether an idle thread would take a folder now; cheap, and may be out of date.
    [[nodiscard]] bool wantsFolder() const noexcept
    {
        return m_queued.load(std::memory_order_relaxed) < m_idle.load(std::memory_order_relaxed);
    }
    // Gives `folder` of `job` at `path` to an idle thread and returns true; false, the folder
    // left with the caller, when none is idle any more.
    bool handOver(Job& job, UniqueFd& folder, std::string_view path);

private:
    struct Task {
        Job* job;
        UniqueFd folder; // not open for a start
        std::string path;
    };

    // Runs tasks until `until` is over, or, with none, until the crew ends; starts only when
    // `takesStarts`. Called and returns with `lock` held.
    void serve(std::unique_lock<std::mutex>& lock, std::size_t worker, Job* until, bool takesStarts);
    void queue(Task task, bool isStart);
    void end();

    const std::size_t m_helpers;
    std::stop_source m_stop;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_folders; // taken before starts: each holds a descriptor
    std::deque<Task> m_starts;
    std::atomic<std::size_t> m_queued{0};
    std::atomic<std::size_t> m_idle{0}; // could take a folder now: waiting, or helpers not started
    std::size_t m_waiting = 0;          // asleep on m_changed
    bool m_ended = false;
    std::stop_callback<std::function<void()>> m_outerStop; // after what end() touches
    std::vector<std::jthread> m_threads;                   // last, so that they are joined before the rest goes
};

} // namespace kestrow
