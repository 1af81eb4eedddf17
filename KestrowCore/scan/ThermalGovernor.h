#pragma once

#include "support/KestrowError.h"

#include <stop_token>
#include <thread>
#include <utility>

namespace kestrow {

// Paces scans: `checkpoint` between units of work, `withPermit` around a whole stage.
class ThermalGovernor {
public:
    // Throws CancellationError when `stop` is requested.
    void checkpoint(std::stop_token stop) const
    {
        if (stop.stop_requested())
            throw CancellationError();
        std::this_thread::yield();
    }

    // Runs `body` holding one permit and returns its result, or passes on its error.
    template <typename Body>
    auto withPermit(std::stop_token stop, Body&& body) const -> decltype(body())
    {
        if (stop.stop_requested())
            throw CancellationError();
        return std::forward<Body>(body)();
    }
};

} // namespace kestrow
