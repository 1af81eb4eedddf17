#pragma once

#include <cstddef>
#include <functional>
#include <stop_token>

namespace kestrow {

// Runs many independent tasks on a bounded number of threads, the calling thread among them.
// When no further thread can be had, the tasks run on the threads there are, at worst all on
// the caller's.
class InspectionPool {
public:
    // At most `width` threads at once; 0 means one per processor.
    explicit InspectionPool(int width = 0);

    [[nodiscard]] int width() const { return m_width; }

    // Calls `task(index)` once for each index below `count`, in no set order, and returns when
    // all are done. Tasks not yet begun are skipped once `stop` is requested. The first
    // exception a task throws is thrown again here, after every running task has ended; the
    // tasks after it are skipped.
    void run(std::size_t count, const std::function<void(std::size_t)>& task, std::stop_token stop = {}) const;

private:
    int m_width;
};

} // namespace kestrow
