#include "scan/ThermalGovernor.h"

#include "platform/DefaultPowerSourceProvider.h"
#include "platform/DefaultThermalStateProvider.h"
#include "scan/UnrestrictedConditionsProvider.h"

#include <algorithm>
#include <chrono>

namespace kestrow {

namespace {

QString truncatedPercent(double percentage)
{
    return QString::number(static_cast<long long>(percentage));
}

} // namespace

ThermalGovernor::ThermalGovernor(std::shared_ptr<const ThermalStateProviding> thermalProvider,
                                 std::shared_ptr<const PowerSourceProviding> powerProvider, int activeProcessors)
    : m_thermalProvider(std::move(thermalProvider))
    , m_powerProvider(std::move(powerProvider))
    , m_activeProcessors(std::max(1, activeProcessors))
    , m_cachedProfile(calculateProfile(m_thermalProvider->thermalState(), *m_powerProvider, m_activeProcessors))
{
}

std::shared_ptr<ThermalGovernor> ThermalGovernor::create(std::shared_ptr<const ThermalStateProviding> thermalProvider,
                                                         std::shared_ptr<const PowerSourceProviding> powerProvider,
                                                         int activeProcessors)
{
    std::shared_ptr<ThermalGovernor> governor(
        new ThermalGovernor(std::move(thermalProvider), std::move(powerProvider), activeProcessors));
    // Subscribed before the governor is handed out, so that no update falls between.
    auto updates = governor->m_thermalProvider->thermalStateUpdates();
    governor->m_observer = std::jthread(
        [weakGovernor = std::weak_ptr<ThermalGovernor>(governor), updates = std::move(updates)](std::stop_token stop) {
            while (updates->next(stop)) {
                const std::shared_ptr<ThermalGovernor> strongGovernor = weakGovernor.lock();
                if (!strongGovernor)
                    return;
                strongGovernor->updateThermalConditions();
            }
        });
    return governor;
}

std::shared_ptr<ThermalGovernor> ThermalGovernor::makeDefault()
{
    const auto source = SystemSource::current();
    return create(std::make_shared<DefaultThermalStateProvider>(source),
                  std::make_shared<DefaultPowerSourceProvider>(source), source->activeProcessorCount());
}

std::shared_ptr<ThermalGovernor> ThermalGovernor::unrestricted(int activeProcessors)
{
    const auto conditions = std::make_shared<UnrestrictedConditionsProvider>();
    return create(conditions, conditions, activeProcessors);
}

ThermalGovernor::~ThermalGovernor()
{
    if (!m_observer.joinable())
        return;
    m_observer.request_stop();
    // The observer itself may hold the last reference for a moment; it cannot wait for itself.
    if (m_observer.get_id() == std::this_thread::get_id())
        m_observer.detach();
    else
        m_observer.join();
}

ConcurrencyProfile ThermalGovernor::calculateProfile(ThermalState thermal, const PowerSourceProviding& power,
                                                     int processors)
{
    const int n = processors;
    if (thermal == ThermalState::critical)
        return {0, 0, true, QStringLiteral("Thermal condition is CRITICAL. Scanning paused.")};
    if (power.isLowPowerModeEnabled())
        return {1, 3, false, QStringLiteral("Low Power Mode active.")};
    const std::optional<double> percentage = power.batteryPercentage();
    const bool onAC = power.isACPowered();
    if (percentage && !onAC && *percentage <= 20.0)
        return {1, 3, false,
                QStringLiteral("Battery critically low (") + truncatedPercent(*percentage) + QStringLiteral("%).")};
    if (thermal == ThermalState::fair)
        return {std::clamp(n / 4, 1, n), 1, false, QStringLiteral("Thermal condition is FAIR. Throttled concurrency.")};
    if (thermal == ThermalState::serious)
        return {1, 5, false, QStringLiteral("Thermal condition is SERIOUS. Single-task crawling active.")};
    if (onAC)
        return {std::min(n, 16), 0, false,
                QStringLiteral("Nominal thermal state on AC power. Maximum concurrency enabled.")};
    const int batteryTasks = n >= 8 ? 4 : (n == 1 ? 1 : n / 2);
    return {batteryTasks, 0, false,
            QStringLiteral("Running on battery power (") + truncatedPercent(percentage.value_or(100.0)) +
                QStringLiteral("%). Moderate concurrency.")};
}

ConcurrencyProfile ThermalGovernor::currentProfile() const
{
    std::lock_guard lock(m_mutex);
    return m_cachedProfile;
}

ThermalGovernor::Occupancy ThermalGovernor::occupancy() const
{
    std::lock_guard lock(m_mutex);
    return {m_activePermits, m_permitWaiters.size(), m_pauseWaiters.size()};
}

void ThermalGovernor::updateThermalConditions()
{
    ConcurrencyProfile profile;
    std::function<void(const ConcurrencyProfile&)> handler;
    {
        std::lock_guard lock(m_mutex);
        profile = calculateProfile(m_thermalProvider->thermalState(), *m_powerProvider, m_activeProcessors);
        if (profile == m_cachedProfile)
            return;
        m_cachedProfile = profile;
        resumeWaitersIfNeeded();
        handler = m_profileChangeHandler;
    }
    if (handler)
        handler(profile);
}

void ThermalGovernor::setProfileChangeHandler(std::function<void(const ConcurrencyProfile&)> handler)
{
    std::lock_guard lock(m_mutex);
    m_profileChangeHandler = std::move(handler);
}

void ThermalGovernor::checkpoint(std::stop_token stop)
{
    throwIfStopped(stop);
    std::uint64_t sleepMs = 0;
    {
        std::unique_lock lock(m_mutex);
        while (m_cachedProfile.isPaused) {
            Waiter waiter;
            m_pauseWaiters.push_back(&waiter);
            waitUntilResumed(lock, waiter);
            throwIfStopped(stop);
        }
        sleepMs = m_cachedProfile.directorySleepMs;
    }
    throwIfStopped(stop);
    if (sleepMs == 0) {
        std::this_thread::yield();
        return;
    }
    std::mutex sleepMutex;
    std::condition_variable_any sleeper;
    std::unique_lock sleeping(sleepMutex);
    sleeper.wait_for(sleeping, stop, std::chrono::milliseconds(sleepMs), [] { return false; });
    throwIfStopped(stop);
}

void ThermalGovernor::throwIfStopped(const std::stop_token& stop)
{
    if (stop.stop_requested())
        throw CancellationError();
}

void ThermalGovernor::waitUntilResumed(std::unique_lock<std::mutex>& lock, Waiter& waiter)
{
    waiter.resumed.wait(lock, [&waiter] { return waiter.isResumed; });
}

void ThermalGovernor::acquirePermit()
{
    std::unique_lock lock(m_mutex);
    if (!m_cachedProfile.isPaused && m_activePermits < m_cachedProfile.maxParallelTasks) {
        ++m_activePermits;
        return;
    }
    // Resumed holding a permit that the resumer counted for this caller.
    Waiter waiter;
    m_permitWaiters.push_back(&waiter);
    waitUntilResumed(lock, waiter);
}

void ThermalGovernor::releasePermit()
{
    std::lock_guard lock(m_mutex);
    if (m_activePermits >= 1)
        --m_activePermits;
    resumeWaitersIfNeeded();
}

void ThermalGovernor::resumeWaitersIfNeeded()
{
    if (m_cachedProfile.isPaused)
        return;
    const auto resume = [](Waiter* waiter) {
        waiter->isResumed = true;
        waiter->resumed.notify_one();
    };
    for (Waiter* waiter : m_pauseWaiters)
        resume(waiter);
    m_pauseWaiters.clear();
    while (m_activePermits < m_cachedProfile.maxParallelTasks && !m_permitWaiters.empty()) {
        Waiter* waiter = m_permitWaiters.front();
        m_permitWaiters.pop_front();
        ++m_activePermits;
        resume(waiter);
    }
}

} // namespace kestrow
