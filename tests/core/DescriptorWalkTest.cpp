#include "TestHome.h"

#include "platform/FileManager.h"
#include "platform/NativePath.h"
#include "scan/ItemMeasurer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// The real calls, with the faults and events a test asks for.
class InjectedCalls : public SystemCalls {
public:
    int openAt(int folder, const char* name, int flags, mode_t mode) const override
    {
        if (refuseDotDot && std::strcmp(name, "..") == 0)
            return errno = EACCES, -1;
        return SystemCalls::openAt(folder, name, flags, mode);
    }
    int openConstrained(int folder, const char* name, int flags, std::uint32_t resolve, mode_t mode) const override
    {
        if (onConstrainedOpen)
            onConstrainedOpen(name);
        if (withoutOpenat2)
            return errno = ENOSYS, -1;
        return SystemCalls::openConstrained(folder, name, flags, resolve, mode);
    }
    int unlinkAt(int folder, const char* name, int flags) const override
    {
        if (refusedUnlink == name)
            return errno = EACCES, -1;
        return SystemCalls::unlinkAt(folder, name, flags);
    }

    bool refuseDotDot = false;
    bool withoutOpenat2 = false;
    QByteArray refusedUnlink;
    std::function<void(const char*)> onConstrainedOpen;
};

class RecordingSink : public WalkSink {
public:
    void regularFile(const FileStatus& status) override { ++files, bytes += status.size; }
    void unreadableDirectory(const QString& path, int) override { unreadable.append(path); }
    void mountPoint(const QString& path) override { mounts.append(path); }
    std::unique_ptr<WalkSink> split() const override { return std::make_unique<RecordingSink>(); }
    void join(WalkSink& part) override
    {
        const auto& other = static_cast<const RecordingSink&>(part);
        files += other.files, bytes += other.bytes;
        unreadable.append(other.unreadable), mounts.append(other.mounts);
    }
    int files = 0;
    std::int64_t bytes = 0;
    QStringList unreadable, mounts;
};

// `levels` nested folders "d", each holding a one-byte file, made through descriptors: the
// path soon outgrows what a path-based call accepts.
void buildDeepTree(const QString& root, int levels)
{
    int folder = ::open(NativePath::encode(root).constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(::mkdirat(folder, "d", 0755), 0);
        const int child = ::openat(folder, "d", O_RDONLY | O_DIRECTORY);
        const int file = ::openat(child, "f", O_CREAT | O_WRONLY, 0644);
        ASSERT_EQ(::write(file, "x", 1), 1);
        ::close(file);
        ::close(folder);
        folder = child;
    }
    ::close(folder);
}

// Lowers this process's limit of open descriptors while it lives.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_saved);
        rlimit lowered = m_saved;
        lowered.rlim_cur = limit;
        ::setrlimit(RLIMIT_NOFILE, &lowered);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_saved); }

private:
    rlimit m_saved{};
};

// A bind mount, undone when it goes whatever the test did.
class BindMount {
public:
    BindMount(const QString& source, const QString& target)
        : m_target(NativePath::encode(target))
        , m_mounted(::mount(NativePath::encode(source).constData(), m_target.constData(), nullptr, MS_BIND, nullptr) ==
                    0)
    {
    }
    ~BindMount()
    {
        if (m_mounted)
            ::umount2(m_target.constData(), MNT_DETACH);
    }
    [[nodiscard]] bool mounted() const { return m_mounted; }

private:
    QByteArray m_target;
    bool m_mounted;
};

bool exists(const QString& path)
{
    struct stat info;
    return ::lstat(NativePath::encode(path).constData(), &info) == 0;
}

} // namespace

TEST(DescriptorWalk, DeepTreesAreMeasuredAndRemovedWholeUnderALowDescriptorLimit)
{
    TestHome home;
    const QString deep = home.makeDirectory(QStringLiteral("deep"));
    buildDeepTree(deep, 5000);
    const QString moved = home.makeDirectory(QStringLiteral("moved"));
    buildDeepTree(moved, 150);
    const FileManager fileManager;
    {
        const DescriptorLimit limit(256);
        const MeasuredMetrics metrics = ItemMeasurer(fileManager).measureItem(deep);
        EXPECT_EQ(metrics.fileCount, 5000);
        EXPECT_EQ(metrics.logicalBytes, 5000);

        // Without "..", folders let go are reached again by name from above.
        const auto noDotDot = std::make_shared<InjectedCalls>();
        noDotDot->refuseDotDot = true;
        RecordingSink sink;
        FileManager(noDotDot).walk(moved, sink);
        EXPECT_EQ(sink.files, 150);
        EXPECT_TRUE(sink.unreadable.isEmpty());

        const FileOperationResult removed = fileManager.removeItem(deep);
        EXPECT_TRUE(removed.succeeded) << removed.errorDescription.toStdString();
    }
    EXPECT_FALSE(exists(deep));
    EXPECT_TRUE(fileManager.removeItem(moved).succeeded);
}

TEST(DescriptorWalk, AnchoredWalksAndRemovalsStayOnTheItemsMount)
{
    TestHome home;
    const QString item = home.writeFile(QStringLiteral(".cache/item/a"), 100).chopped(2);
    const QString mountPoint = home.makeDirectory(QStringLiteral(".cache/item/sub/mnt"));
    const QString sentinel = home.writeFile(QStringLiteral("elsewhere/sentinel"), 1000);
    const BindMount bind(home.path(QStringLiteral("elsewhere")), mountPoint);
    if (!bind.mounted())
        GTEST_SKIP() << "mount --bind is refused here";

    const auto withoutOpenat2 = std::make_shared<InjectedCalls>();
    withoutOpenat2->withoutOpenat2 = true;
    for (const auto& calls : {SystemCalls::real(), std::shared_ptr<const SystemCalls>(withoutOpenat2)}) {
        const FileManager fileManager(calls);
        for (std::size_t threads : {1, 4}) {
            RecordingSink sink;
            fileManager.walk(*fileManager.anchor(item).item, sink, {}, {.threads = threads, .pace = {}});
            EXPECT_EQ(sink.mounts, QStringList{mountPoint});
            EXPECT_EQ(sink.files, 1) << "the mounted sentinel is not counted";
        }

        EXPECT_EQ(fileManager.removeItem(*fileManager.anchor(item).item).errorDescription,
                  QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; nothing was removed.")
                      .arg(item, mountPoint));
        EXPECT_EQ(fileManager.removeItem(mountPoint).errorDescription,
                  QStringLiteral("\u201c%1\u201d is a mount point; nothing was removed.").arg(mountPoint));
        EXPECT_TRUE(exists(item + QStringLiteral("/a")) && exists(sentinel));
    }
    RecordingSink crossing;
    FileManager().walk(item, crossing);
    EXPECT_EQ(crossing.files, 2) << "a walk by path goes on into mounts";

    // A mount that appears between the look over the tree and the deleting stops the deleting.
    home.makeDirectory(QStringLiteral("late/inner"));
    const QString late = home.path(QStringLiteral("late"));
    std::optional<BindMount> lateBind;
    int opens = 0;
    const auto midWay = std::make_shared<InjectedCalls>();
    midWay->onConstrainedOpen = [&](const char* name) {
        if (std::strcmp(name, "late") == 0 && ++opens == 2)
            lateBind.emplace(home.path(QStringLiteral("elsewhere")), late + QStringLiteral("/inner"));
    };
    EXPECT_EQ(FileManager(midWay).removeItem(late).errorDescription,
              QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%1/inner\u201d; the removal stopped there.")
                  .arg(late));
    EXPECT_TRUE(exists(sentinel));
}

TEST(DescriptorWalk, RemovalTakesLinksThemselvesAndRefusesWhatChangedOrWillNotGo)
{
    TestHome home;
    const QString target = home.writeFile(QStringLiteral("projects/app/main.c"), 5000);
    const QString link = home.path(QStringLiteral(".cache/link"));
    const FileManager fileManager;
    for (const QString& named : {QString(link + QLatin1Char('/')), link}) {
        home.makeSymbolicLink(QStringLiteral(".cache/link"), home.path(QStringLiteral("projects")));
        const FileOperationResult removed = fileManager.removeItem(*fileManager.anchor(named).item);
        EXPECT_TRUE(removed.succeeded) << removed.errorDescription.toStdString();
        EXPECT_FALSE(exists(link));
        EXPECT_TRUE(exists(target)) << "the link's target stays whole";
    }

    // Swapped for another folder after it was anchored: nothing goes.
    const QString item = home.writeFile(QStringLiteral(".cache/item/a"), 10).chopped(2);
    const AnchorOutcome anchored = fileManager.anchor(item);
    ASSERT_EQ(::rename(NativePath::encode(item).constData(),
                       NativePath::encode(QString(item + QStringLiteral("-old"))).constData()),
              0);
    home.writeFile(QStringLiteral(".cache/item/b"), 10);
    EXPECT_EQ(fileManager.removeItem(*anchored.item).errorDescription,
              QStringLiteral("\u201c%1\u201d changed after it was checked; nothing was removed.").arg(item));
    EXPECT_TRUE(exists(item + QStringLiteral("/b")) && exists(item + QStringLiteral("-old/a")));

    const auto refusing = std::make_shared<InjectedCalls>();
    refusing->refusedUnlink = "locked";
    home.writeFile(QStringLiteral(".cache/item/sub/locked"), 10);
    EXPECT_EQ(FileManager(refusing).removeItem(item).errorDescription,
              QStringLiteral("Could not remove \u201c%1/sub/locked\u201d: Permission denied").arg(item));
    EXPECT_EQ(fileManager.removeItem(item + QStringLiteral("-gone")).errorDescription,
              QStringLiteral("Could not remove \u201c%1-gone\u201d: No such file or directory").arg(item));
}
