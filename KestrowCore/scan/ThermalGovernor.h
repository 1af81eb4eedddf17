#pragma once

#include "platform/PowerSourceProviding.h"
#include "platform/ThermalStateProviding.h"
#include "scan/ConcurrencyProfile.h"
#include "support/KestrowError.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace kestrow {

// Keeps scans from heating the machine or draining its battery. `withPermit` holds one of a
// limited number of slots around a whole stage; `checkpoint` stands between units of work,
// stopping there while the machine is critical and sleeping while it is hot or short of power.
// The profile follows thermal updates (and explicit `updateThermalConditions` calls) only: a
// change of power alone takes effect at the next one. One mutex serialises the governor;
// callers waiting for a permit or for a pause to end are resumed first come, first served.
class ThermalGovernor {
public:
    // Who is inside the gates and who waits at them, for status displays.
    struct Occupancy {
        int activePermits = 0;
        std::size_t permitWaiters = 0;
        std::size_t pauseWaiters = 0;
    };

    // Computes the first profile and starts the observer of thermal updates, a thread that
    // holds the governor weakly and ends when the governor goes or the updates finish.
    [[nodiscard]] static std::shared_ptr<ThermalGovernor>
    create(std::shared_ptr<const ThermalStateProviding> thermalProvider,
           std::shared_ptr<const PowerSourceProviding> powerProvider, int activeProcessors);
    // The running machine's providers and its count of active processors.
    [[nodiscard]] static std::shared_ptr<ThermalGovernor> makeDefault();
    // A governor that never slows nor pauses: a cool machine on AC, for ever.
    [[nodiscard]] static std::shared_ptr<ThermalGovernor> unrestricted(int activeProcessors);

    ~ThermalGovernor();
    ThermalGovernor(const ThermalGovernor&) = delete;
    ThermalGovernor& operator=(const ThermalGovernor&) = delete;

    // The profile for these conditions on `processors` processors (at least 1).
    [[nodiscard]] static ConcurrencyProfile calculateProfile(ThermalState thermal, const PowerSourceProviding& power,
                                                             int processors);

    // The profile in force; computes nothing.
    [[nodiscard]] ConcurrencyProfile currentProfile() const;
    [[nodiscard]] int activeProcessors() const { return m_activeProcessors; }
    [[nodiscard]] Occupancy occupancy() const;
    // Reads the providers afresh, sets the profile and resumes whom it now lets through.
    void updateThermalConditions();
    // Called with the new profile whenever an update changes it, on the updating thread and
    // outside the governor's lock.
    void setProfileChangeHandler(std::function<void(const ConcurrencyProfile&)> handler);

    // Throws CancellationError when `stop` is requested. While paused it blocks; a stop
    // requested meanwhile is seen only once the pause ends. Then it sleeps the profile's
    // interval (a stop ends the sleep early) or yields once.
    void checkpoint(std::stop_token stop);

    // Runs `body` holding one permit and returns its result, or passes on its error; the
    // permit is released either way. Blocks while no permit is free.
    template <typename Body> auto withPermit(std::stop_token stop, Body&& body) -> decltype(body())
    {
        throwIfStopped(stop);
        acquirePermit();
        const PermitRelease release(*this);
        throwIfStopped(stop);
        return std::forward<Body>(body)();
    }

private:
    // A caller blocked in one of the waiter lists, on its own stack until resumed.
    struct Waiter {
        std::condition_variable resumed;
        bool isResumed = false;
    };

    class PermitRelease {
    public:
        explicit PermitRelease(ThermalGovernor& governor)
            : m_governor(governor)
        {
        }
        ~PermitRelease() { m_governor.releasePermit(); }
        PermitRelease(const PermitRelease&) = delete;
        PermitRelease& operator=(const PermitRelease&) = delete;

    private:
        ThermalGovernor& m_governor;
    };

    ThermalGovernor(std::shared_ptr<const ThermalStateProviding> thermalProvider,
                    std::shared_ptr<const PowerSourceProviding> powerProvider, int activeProcessors);

    static void throwIfStopped(const std::stop_token& stop);
    static void waitUntilResumed(std::unique_lock<std::mutex>& lock, Waiter& waiter);
    void acquirePermit();
    void releasePermit();
    void resumeWaitersIfNeeded(); // with m_mutex held

    const std::shared_ptr<const ThermalStateProviding> m_thermalProvider;
    const std::shared_ptr<const PowerSourceProviding> m_powerProvider;
    const int m_activeProcessors;
    mutable std::mutex m_mutex;
    int m_activePermits = 0;
    std::deque<Waiter*> m_permitWaiters;
    std::deque<Waiter*> m_pauseWaiters;
    ConcurrencyProfile m_cachedProfile;
    std::function<void(const ConcurrencyProfile&)> m_profileChangeHandler;
    std::jthread m_observer;
};

} // namespace kestrow
