#pragma once

#include <QString>

#include <cstdint>

namespace kestrow {

// How hard a scan may work under the present conditions.
struct ConcurrencyProfile {
    int maxParallelTasks = 0;           // permits that may be held at once
    std::uint64_t directorySleepMs = 0; // pause at every checkpoint; 0 is a cooperative yield
    bool isPaused = false;              // all scanning stops at the gates
    QString reason;                     // says why, shown as it stands

    friend bool operator==(const ConcurrencyProfile&, const ConcurrencyProfile&) = default;
};

} // namespace kestrow
