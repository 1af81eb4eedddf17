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

// The threads of one walk and the folders they hand each other. The calling thread walks the
// root; a walker that meets a sub-folder while another thread is idle hands it over, otherwise
// it goes down itself, so that the queue stays short and the open folders few. Helper threads
// start only when there is work for them, and never more than `threads` walk at once.
class WalkCrew {
public:
    // Walks `folder` at `path` on the thread of `worker` (0 for the calling thread), handing
    // sub-folders over through the crew; false ends the whole walk.
    using Walk = std::function<bool(std::size_t worker, UniqueFd folder, std::string path)>;

    // At least one thread; a stop requested on `stop` ends the walk on all of them.
    WalkCrew(std::size_t threads, std::stop_token stop);
    ~WalkCrew();
    WalkCrew(const WalkCrew&) = delete;
    WalkCrew& operator=(const WalkCrew&) = delete;

    [[nodiscard]] std::size_t threads() const { return m_threads; }
    // What each walker tests between entries: ended by the caller, by a walker or by `stop`.
    [[nodiscard]] std::stop_token stopToken() const { return m_stop.get_token(); }

    // Runs `walk` on the root and on every folder handed over, and returns when all of it was
    // walked, or when the walk was ended: then false. Once per crew.
    bool run(UniqueFd root, std::string path, const Walk& walk);

    // Whether an idle thread would take a folder now; cheap, and may be out of date.
    [[nodiscard]] bool wantsFolder() const noexcept
    {
        return m_queued.load(std::memory_order_relaxed) < m_idle.load(std::memory_order_relaxed);
    }
    // Gives `folder` at `path` to an idle thread and returns true; false, the folder left with
    // the caller, when none is idle any more.
    bool handOver(UniqueFd& folder, std::string_view path);

private:
    struct Task {
        UniqueFd folder;
        std::string path;
    };

    void serve(std::size_t worker);
    void end();

    const std::size_t m_threads;
    std::stop_source m_stop;
    const Walk* m_walk = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_queue;
    std::atomic<std::size_t> m_queued{0};
    std::atomic<std::size_t> m_idle{0}; // not walking: waiting, between folders or not started
    std::size_t m_waiting = 0;          // asleep on m_changed
    bool m_ended = false;
    std::stop_callback<std::function<void()>> m_outerStop; // after what end() touches
    std::vector<std::jthread> m_helpers;                   // last, so that they are joined before the rest goes
};

} // namespace kestrow
