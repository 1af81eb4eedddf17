#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrow {

// A fixed number of threads, the caller's among them, for tasks that give rise to more tasks.
// A task handed in while a thread is idle goes to that thread; otherwise it runs at once on the
// thread that handed it in, so the queue never holds more than the idle threads take and no
// task waits behind another. Tasks never wait for each other: whoever finishes last carries on.
class BoundedTaskPool {
public:
    using Task = std::function<void()>;

    // At least one thread; 0 means one per processor.
    explicit BoundedTaskPool(std::size_t threads = 0);
    ~BoundedTaskPool();
    BoundedTaskPool(const BoundedTaskPool&) = delete;
    BoundedTaskPool& operator=(const BoundedTaskPool&) = delete;

    [[nodiscard]] std::size_t threads() const { return m_threads; }

    // Runs `first` on the calling thread, then helps with what is left, and returns when every
    // task handed in meanwhile has run. The first exception a task threw is thrown again here.
    // Once per pool.
    void run(const Task& first);
    // From within a task: to an idle thread, or run here and now.
    void submit(Task task);

private:
    void serve();
    void runGuarded(const Task& task);

    const std::size_t m_threads;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_queue;
    std::atomic<std::size_t> m_idle; // not running a task: waiting, or not started yet
    std::size_t m_waiting = 0;       // asleep on m_changed
    bool m_over = false;
    std::exception_ptr m_failure; // the first, under m_mutex
    std::vector<std::jthread> m_helpers;
};

} // namespace kestrow
