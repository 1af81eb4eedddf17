#include "TestHome.h"

#include "platform/NativePath.h"
#include "scan/DeveloperTargets.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

void writeNative(const QByteArray& path, const QByteArray& content)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(fd, 0) << path.constData();
    EXPECT_EQ(::write(fd, content.constData(), static_cast<size_t>(content.size())), content.size());
    ::close(fd);
}

} // namespace

// "proj\xe9" and "proj\xef\xbf\xbd" (the UTF-8 of U+FFFD, what a lossy reading makes of 0xE9)
// are two checkouts: each marker must be read from its own folder.
TEST(RawByteNames, EachCheckoutsMarkerIsReadFromItsOwnFolder)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("Developer/upstream/.git/worktrees/live"));
    const QByteArray developer = NativePath::encode(home.path(QStringLiteral("Developer")));
    const QByteArray live = developer + "/proj\xe9";
    const QByteArray orphan = developer + "/proj\xef\xbf\xbd";
    ASSERT_EQ(::mkdir(live.constData(), 0755), 0);
    ASSERT_EQ(::mkdir(orphan.constData(), 0755), 0);
    writeNative(live + "/.git", "gitdir: " + developer + "/upstream/.git/worktrees/live\n");
    writeNative(developer + "/upstream/.git/worktrees/live/gitdir", live + "/.git\n");
    writeNative(orphan + "/.git", "gitdir: /missing/path\n");

    const DeveloperTargets targets(
        {.homeURL = home.path(), .projectRoots = QStringList{NativePath::decode(developer)}});
    const std::vector<DiscoveredItem> items = targets.scan({StorageCategory::developerCache}, {});
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].path, NativePath::decode(orphan));
    EXPECT_EQ(items[0].itemDescription, QStringLiteral("Orphaned Git Worktree Checkout: proj\ufffd"));
}
