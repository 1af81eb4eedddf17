#include "platform/DefaultThermalStateProvider.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#ifdef __APPLE__
#include <CoreFoundation/CoreFoundation.h>

#include <deque>
#endif

namespace kestrow {

namespace {

#ifdef __APPLE__

// Each post of NSProcessInfo's thermal notification (delivered through the process's local
// notification centre) yields the state as it is then.
class NotifiedThermalStateUpdates final : public ThermalStateUpdates {
public:
    explicit NotifiedThermalStateUpdates(std::shared_ptr<const SystemSource> source)
        : m_source(std::move(source))
    {
        CFNotificationCenterAddObserver(CFNotificationCenterGetLocalCenter(), this, &posted, notificationName(),
                                        nullptr, CFNotificationSuspensionBehaviorDeliverImmediately);
    }

    ~NotifiedThermalStateUpdates() override
    {
        CFNotificationCenterRemoveObserver(CFNotificationCenterGetLocalCenter(), this, notificationName(), nullptr);
    }

    std::optional<ThermalState> next(std::stop_token stop) override
    {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait(lock, stop, [this] { return !m_pending.empty(); }))
            return std::nullopt;
        const ThermalState state = m_pending.front();
        m_pending.pop_front();
        return state;
    }

private:
    static CFStringRef notificationName() { return CFSTR("NSProcessInfoThermalStateDidChangeNotification"); }

    static void posted(CFNotificationCenterRef, void* observer, CFStringRef, const void*, CFDictionaryRef)
    {
        auto* updates = static_cast<NotifiedThermalStateUpdates*>(observer);
        const ThermalState state = updates->m_source->thermalState();
        {
            std::lock_guard lock(updates->m_mutex);
            updates->m_pending.push_back(state);
        }
        updates->m_changed.notify_one();
    }

    std::shared_ptr<const SystemSource> m_source;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<ThermalState> m_pending;
};

#else

class PolledThermalStateUpdates final : public ThermalStateUpdates {
public:
    explicit PolledThermalStateUpdates(std::shared_ptr<const SystemSource> source)
        : m_source(std::move(source))
        , m_last(m_source->thermalState())
    {
    }

    std::optional<ThermalState> next(std::stop_token stop) override
    {
        for (;;) {
            {
                std::unique_lock lock(m_mutex);
                m_wake.wait_for(lock, stop, std::chrono::seconds(2), [] { return false; });
                if (stop.stop_requested())
                    return std::nullopt;
            }
            const ThermalState state = m_source->thermalState();
            if (state != m_last) {
                m_last = state;
                return state;
            }
        }
    }

private:
    std::shared_ptr<const SystemSource> m_source;
    ThermalState m_last;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
};

#endif

} // namespace

DefaultThermalStateProvider::DefaultThermalStateProvider(std::shared_ptr<const SystemSource> source)
    : m_source(std::move(source))
{
}

ThermalState DefaultThermalStateProvider::thermalState() const
{
    return m_source->thermalState();
}

std::unique_ptr<ThermalStateUpdates> DefaultThermalStateProvider::thermalStateUpdates() const
{
#ifdef __APPLE__
    return std::make_unique<NotifiedThermalStateUpdates>(m_source);
#else
    return std::make_unique<PolledThermalStateUpdates>(m_source);
#endif
}

} // namespace kestrow
