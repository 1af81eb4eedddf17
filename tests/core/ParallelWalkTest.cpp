#include "TestHome.h"

#include "platform/FileManager.h"
#include "platform/NativePath.h"
#include "scan/ItemMeasurer.h"
#include "scan/ThermalGovernor.h"
#include "scan/UnrestrictedConditionsProvider.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <sys/stat.h>
#include <thread>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// Counts what a walk sees, in parts when the walk splits it.
class PartedSink : public WalkSink {
public:
    void regularFile(const FileStatus& status) override { ++files, bytes += status.size; }
    void unreadableDirectory(const QString& path, int) override { unreadable.append(path); }
    std::unique_ptr<WalkSink> split() const override { return std::make_unique<PartedSink>(); }
    void join(WalkSink& part) override
    {
        const auto& other = static_cast<const PartedSink&>(part);
        files += other.files, bytes += other.bytes;
        unreadable.append(other.unreadable);
        partsThatSawFiles += other.files > 0 ? 1 : 0;
    }
    int files = 0;
    std::int64_t bytes = 0;
    QStringList unreadable;
    int partsThatSawFiles = 0;
};

// Fails the listing of one folder, known by its inode.
class FailingListing : public SystemCalls {
public:
    ssize_t readDirectory(int folder, void* buffer, size_t size) const override
    {
        FileStatus status;
        if (statAt(folder, "", AT_EMPTY_PATH, status) == 0 && status.inode == failingInode)
            return errno = EIO, -1;
        return SystemCalls::readDirectory(folder, buffer, size);
    }
    std::uint64_t failingInode = 0;
};

// A thermal state the test sets; the governor hears of it when told to update.
class SetThermalState final : public ThermalStateProviding {
public:
    ThermalState thermalState() const override { return state.load(); }
    std::unique_ptr<ThermalStateUpdates> thermalStateUpdates() const override
    {
        return UnrestrictedConditionsProvider().thermalStateUpdates();
    }
    std::atomic<ThermalState> state = ThermalState::nominal;
};

// A pace that holds the thread starting a walk, at each folder after its first, until another
// thread has listed one: folders are then shared out however busy the machine is.
class ShareOut {
public:
    bool pace()
    {
        std::unique_lock lock(m_mutex);
        const std::thread::id self = std::this_thread::get_id();
        m_threads.insert(self);
        m_joined.notify_all();
        if (m_first == std::thread::id())
            m_first = self;
        else if (self == m_first)
            m_joined.wait_for(lock, std::chrono::seconds(10), [this] { return m_threads.size() > 1; });
        return true;
    }
    [[nodiscard]] std::size_t threads()
    {
        const std::lock_guard lock(m_mutex);
        return m_threads.size();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_joined;
    std::thread::id m_first;
    std::set<std::thread::id> m_threads;
};

// Shares out every walk on several threads, as above.
class SharingFileManager : public FileManager {
public:
    void walk(const QString& root, WalkSink& sink, std::stop_token stop, const WalkOptions& options) const override
    {
        if (options.threads < 2)
            return FileManager::walk(root, sink, std::move(stop), options);
        ShareOut shareOut;
        WalkOptions shared = options;
        shared.pace = [&] { return shareOut.pace() && (!options.pace || options.pace()); };
        FileManager::walk(root, sink, std::move(stop), shared);
        EXPECT_GE(shareOut.threads(), 2u);
    }
};

// 48 folders over two levels, three files each; every fourth folder also holds a second name
// of a file in a folder far from it, so that the two names are met by different threads.
QString buildTree(const TestHome& home)
{
    for (int folder = 0; folder < 48; ++folder)
        for (int file = 0; file < 3; ++file)
            home.writeFile(QStringLiteral("tree/g%1/f%2/file%3").arg(folder / 8).arg(folder).arg(file),
                           100 * folder + file + 1);
    for (int folder = 0; folder < 48; folder += 4)
        home.makeHardLink(QStringLiteral("tree/g%1/f%2/link").arg(folder / 8).arg(folder),
                          QStringLiteral("tree/g%1/f%2/file0").arg((47 - folder) / 8).arg(47 - folder));
    return home.path(QStringLiteral("tree"));
}

} // namespace

TEST(ParallelWalk, TotalsOnSeveralThreadsMatchOneThreadAndHardLinksCountOnce)
{
    TestHome home;
    const QString tree = buildTree(home);
    const SharingFileManager fileManager;
    const MeasuredMetrics single = ItemMeasurer(fileManager, {}, ThermalGovernor::unrestricted(1)).measureItem(tree);
    EXPECT_EQ(single.fileCount, 48 * 3 + 12);
    std::int64_t distinctBytes = 0;
    for (int folder = 0; folder < 48; ++folder)
        distinctBytes += 3 * (100 * folder + 1) + 3;
    EXPECT_EQ(single.logicalBytes, distinctBytes);
    for (int threads : {2, 4, 16})
        EXPECT_EQ(ItemMeasurer(fileManager, {}, ThermalGovernor::unrestricted(threads)).measureItem(tree), single)
            << threads << " threads";
}

TEST(ParallelWalk, AFailedListingIsReportedWhicheverThreadMeetsIt)
{
    TestHome home;
    const QString tree = buildTree(home);
    const QString failing = home.path(QStringLiteral("tree/g3/f29"));
    const auto calls = std::make_shared<FailingListing>();
    calls->failingInode = FileManager().status(failing)->inode;
    for (std::size_t threads : {1, 4}) {
        PartedSink sink;
        FileManager(calls).walk(tree, sink, {}, {.threads = threads, .pace = {}});
        EXPECT_EQ(sink.unreadable, QStringList{failing});
        EXPECT_EQ(sink.files, 48 * 3 + 12 - 3) << "the walk goes on past it, on " << threads << " threads";
    }
}

TEST(ParallelWalk, PacingAndStopsReachEveryThread)
{
    TestHome home;
    const QString tree = buildTree(home);
    const FileManager fileManager;
    ShareOut shareOut;
    PartedSink whole;
    fileManager.walk(tree, whole, {}, {.threads = 4, .pace = [&] { return shareOut.pace(); }});
    EXPECT_GE(shareOut.threads(), 2u);
    EXPECT_GE(whole.partsThatSawFiles, 1);

    std::atomic<int> folders = 0;
    const auto endAfterFive = [&] { return ++folders <= 5; };
    PartedSink ended;
    fileManager.walk(tree, ended, {}, {.threads = 4, .pace = endAfterFive});
    EXPECT_LT(ended.files, whole.files);

    std::stop_source stop;
    const auto stopAfterTen = [&] {
        if (++folders > 10)
            stop.request_stop();
        return true;
    };
    PartedSink stopped;
    fileManager.walk(tree, stopped, stop.get_token(), {.threads = 4, .pace = stopAfterTen});
    EXPECT_LT(stopped.files, whole.files);

    // A paused governor holds the measuring until it lets scans run again.
    const auto thermal = std::make_shared<SetThermalState>();
    thermal->state = ThermalState::critical;
    const auto governor = ThermalGovernor::create(thermal, std::make_shared<UnrestrictedConditionsProvider>(), 4);
    std::atomic<bool> measured = false;
    MeasuredMetrics metrics;
    std::thread measuring([&] {
        metrics = ItemMeasurer(fileManager, {}, governor).measureItem(tree);
        measured = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_FALSE(measured);
    thermal->state = ThermalState::nominal;
    governor->updateThermalConditions();
    measuring.join();
    EXPECT_EQ(metrics.fileCount, whole.files);
}
