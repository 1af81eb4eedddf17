#include "scan/ThermalGovernor.h"

#include "support/KestrowError.h"

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <future>
#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace kestrow;

namespace {

// Conditions set by the test, with an update stream the test posts to.
class FakeConditions final : public ThermalStateProviding, public PowerSourceProviding {
public:
    struct Channel {
        std::mutex mutex;
        std::condition_variable_any posted;
        std::deque<ThermalState> pending;
        std::promise<void> streamEnded;
    };

    class Updates final : public ThermalStateUpdates {
    public:
        explicit Updates(std::shared_ptr<Channel> channel)
            : m_channel(std::move(channel))
        {
        }
        ~Updates() override { m_channel->streamEnded.set_value(); }
        std::optional<ThermalState> next(std::stop_token stop) override
        {
            std::unique_lock lock(m_channel->mutex);
            if (!m_channel->posted.wait(lock, stop, [this] { return !m_channel->pending.empty(); }))
                return std::nullopt;
            const ThermalState state = m_channel->pending.front();
            m_channel->pending.pop_front();
            return state;
        }

    private:
        std::shared_ptr<Channel> m_channel;
    };

    ThermalState thermal = ThermalState::nominal;
    bool onAC = true;
    std::optional<double> percentage;
    bool lowPower = false;
    std::shared_ptr<Channel> channel = std::make_shared<Channel>();

    ThermalState thermalState() const override
    {
        std::lock_guard lock(channel->mutex);
        return thermal;
    }
    std::unique_ptr<ThermalStateUpdates> thermalStateUpdates() const override
    {
        return std::make_unique<Updates>(channel);
    }
    bool isACPowered() const override { return onAC; }
    std::optional<double> batteryPercentage() const override { return percentage; }
    bool isLowPowerModeEnabled() const override { return lowPower; }

    void set(ThermalState state)
    {
        std::lock_guard lock(channel->mutex);
        thermal = state;
    }

    void post(ThermalState state)
    {
        set(state);
        {
            std::lock_guard lock(channel->mutex);
            channel->pending.push_back(state);
        }
        channel->posted.notify_all();
    }
};

ConcurrencyProfile profile(ThermalState thermal, bool onAC, std::optional<double> percentage, bool lowPower, int n)
{
    FakeConditions conditions;
    conditions.onAC = onAC;
    conditions.percentage = percentage;
    conditions.lowPower = lowPower;
    return ThermalGovernor::calculateProfile(thermal, conditions, n);
}

// Polls in steps of a millisecond; fails rather than hangs.
template <typename Condition> void waitUntil(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

TEST(ThermalGovernor, ProfileFollowsTheSevenStepsInOrder)
{
    using enum ThermalState;
    const ConcurrencyProfile pausedProfile{0, 0, true,
                                           QStringLiteral("Thermal condition is CRITICAL. Scanning paused.")};
    const ConcurrencyProfile lowPowerProfile{1, 3, false, QStringLiteral("Low Power Mode active.")};
    EXPECT_EQ(profile(critical, false, 5.0, true, 8), pausedProfile);
    EXPECT_EQ(profile(serious, true, std::nullopt, true, 8), lowPowerProfile);
    EXPECT_EQ(profile(nominal, false, 20.0, false, 8),
              (ConcurrencyProfile{1, 3, false, QStringLiteral("Battery critically low (20%).")}));
    EXPECT_EQ(
        profile(nominal, false, 20.5, false, 8),
        (ConcurrencyProfile{4, 0, false, QStringLiteral("Running on battery power (20%). Moderate concurrency.")}));
    EXPECT_EQ(profile(nominal, false, std::nullopt, false, 2).reason,
              QStringLiteral("Running on battery power (100%). Moderate concurrency."));
    EXPECT_EQ(profile(fair, true, std::nullopt, false, 8),
              (ConcurrencyProfile{2, 1, false, QStringLiteral("Thermal condition is FAIR. Throttled concurrency.")}));
    EXPECT_EQ(profile(serious, false, 50.0, false, 8),
              (ConcurrencyProfile{1, 5, false,
                                  QStringLiteral("Thermal condition is SERIOUS. Single-task crawling active.")}));
    const ConcurrencyProfile acAtFivePercent = profile(nominal, true, 5.0, false, 8);
    EXPECT_EQ(acAtFivePercent,
              (ConcurrencyProfile{8, 0, false,
                                  QStringLiteral("Nominal thermal state on AC power. Maximum concurrency enabled.")}));

    const struct {
        int n, fair, ac, battery;
    } table[] = {{1, 1, 1, 1},   {2, 1, 2, 1},   {4, 1, 4, 2},  {8, 2, 8, 4},
                 {10, 2, 10, 4}, {16, 4, 16, 4}, {24, 6, 16, 4}};
    for (const auto& row : table) {
        EXPECT_EQ(profile(fair, true, std::nullopt, false, row.n).maxParallelTasks, row.fair) << row.n;
        EXPECT_EQ(profile(nominal, true, std::nullopt, false, row.n).maxParallelTasks, row.ac) << row.n;
        EXPECT_EQ(profile(nominal, false, 80.0, false, row.n).maxParallelTasks, row.battery) << row.n;
    }

    EXPECT_EQ(ThermalGovernor::create(std::make_shared<FakeConditions>(), std::make_shared<FakeConditions>(), -3)
                  ->currentProfile()
                  .maxParallelTasks,
              1);
    const auto unrestricted = ThermalGovernor::unrestricted(12);
    unrestricted->updateThermalConditions();
    EXPECT_EQ(unrestricted->currentProfile(), profile(nominal, true, std::nullopt, false, 12));
}

TEST(ThermalGovernor, PauseHoldsEveryoneAndPermitsGoInArrivalOrder)
{
    const auto conditions = std::make_shared<FakeConditions>();
    const auto governor = ThermalGovernor::create(conditions, conditions, 1);
    const auto occupancy = [&] { return governor->occupancy(); };

    std::latch holderInside(1), holderMayLeave(1), firstMayLeave(1);
    std::jthread holder([&] {
        governor->withPermit({}, [&] {
            holderInside.count_down();
            holderMayLeave.wait();
        });
    });
    holderInside.wait();

    conditions->set(ThermalState::critical);
    governor->updateThermalConditions();
    std::jthread paused([&] { governor->checkpoint({}); });
    waitUntil([&] { return occupancy().pauseWaiters == 1; });

    std::mutex orderMutex;
    std::vector<int> order;
    const auto record = [&](int who) {
        std::lock_guard lock(orderMutex);
        order.push_back(who);
    };
    std::jthread first([&] {
        governor->withPermit({}, [&] {
            record(1);
            firstMayLeave.wait();
        });
    });
    waitUntil([&] { return occupancy().permitWaiters == 1; });
    std::jthread second([&] { governor->withPermit({}, [&] { record(2); }); });
    waitUntil([&] { return occupancy().permitWaiters == 2; });

    // Released while paused: nobody moves on, even with no permit held.
    holderMayLeave.count_down();
    holder.join();
    EXPECT_EQ(occupancy().activePermits, 0);
    EXPECT_EQ(occupancy().permitWaiters, 2u);
    EXPECT_EQ(occupancy().pauseWaiters, 1u);

    conditions->set(ThermalState::serious);
    governor->updateThermalConditions();
    paused.join();
    waitUntil([&] {
        std::lock_guard lock(orderMutex);
        return order.size() == 1;
    });
    EXPECT_EQ(occupancy().permitWaiters, 1u);
    firstMayLeave.count_down();
    first.join();
    second.join();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(occupancy().activePermits, 0);
}

TEST(ThermalGovernor, FewerPermitsInterruptNobodyAndFailuresReleaseTheirs)
{
    const auto conditions = std::make_shared<FakeConditions>();
    const auto governor = ThermalGovernor::create(conditions, conditions, 8);
    std::latch bothInside(2), mayLeave(1), lateRan(1);
    std::jthread a([&] {
        governor->withPermit({}, [&] {
            bothInside.count_down();
            mayLeave.wait();
        });
    });
    std::jthread b([&] {
        governor->withPermit({}, [&] {
            bothInside.count_down();
            mayLeave.wait();
        });
    });
    bothInside.wait();

    conditions->set(ThermalState::serious);
    governor->updateThermalConditions();
    EXPECT_EQ(governor->occupancy().activePermits, 2);
    std::jthread late([&] { governor->withPermit({}, [&] { lateRan.count_down(); }); });
    waitUntil([&] { return governor->occupancy().permitWaiters == 1; });
    mayLeave.count_down();
    lateRan.wait();
    a.join();
    b.join();
    late.join();
    EXPECT_EQ(governor->occupancy().activePermits, 0);

    EXPECT_THROW(governor->withPermit({}, [] { throw std::runtime_error("stage failed"); }), std::runtime_error);
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_THROW(governor->withPermit(stopped.get_token(), [] {}), CancellationError);
    EXPECT_THROW(governor->checkpoint(stopped.get_token()), CancellationError);
    EXPECT_EQ(governor->occupancy().activePermits, 0);
    EXPECT_EQ(governor->withPermit({}, [] { return 7; }), 7);
}

TEST(ThermalGovernor, ObserverFollowsUpdatesAndEndsWithTheGovernor)
{
    const auto conditions = std::make_shared<FakeConditions>();
    auto streamEnded = conditions->channel->streamEnded.get_future();
    auto governor = ThermalGovernor::create(conditions, conditions, 4);
    std::promise<ConcurrencyProfile> changed;
    governor->setProfileChangeHandler([&](const ConcurrencyProfile& profile) { changed.set_value(profile); });

    conditions->post(ThermalState::critical);
    EXPECT_TRUE(changed.get_future().get().isPaused);
    EXPECT_TRUE(governor->currentProfile().isPaused);

    const std::weak_ptr<ThermalGovernor> watched = governor;
    governor.reset();
    EXPECT_EQ(streamEnded.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_TRUE(watched.expired());
}
