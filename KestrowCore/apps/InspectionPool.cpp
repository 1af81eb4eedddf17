#include "apps/InspectionPool.h"

#include "platform/SystemSource.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace kestrow {

InspectionPool::InspectionPool(int width)
    : m_width(width > 0 ? width : std::max(1, SystemSource::current()->activeProcessorCount()))
{
}

void InspectionPool::run(std::size_t count, const std::function<void(std::size_t)>& task, std::stop_token stop) const
{
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    std::exception_ptr firstFailure;
    std::mutex failureMutex;
    const auto work = [&] {
        for (std::size_t index = next++; index < count; index = next++) {
            if (stop.stop_requested() || failed)
                return;
            try {
                task(index);
            } catch (...) {
                const std::lock_guard lock(failureMutex);
                if (!failed.exchange(true))
                    firstFailure = std::current_exception();
            }
        }
    };

    std::vector<std::jthread> helpers;
    const std::size_t wanted = std::min<std::size_t>(static_cast<std::size_t>(m_width), count);
    for (std::size_t helper = 1; helper < wanted; ++helper) {
        try {
            helpers.emplace_back(work);
        } catch (const std::system_error&) {
            break; // no more threads to be had: those started and the caller share the work
        }
    }
    work();
    helpers.clear();
    if (firstFailure)
        std::rethrow_exception(firstFailure);
}

} // namespace kestrow
