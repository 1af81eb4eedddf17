#include "TestHome.h"

#include "cleanup/TrashPipeline.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/mount.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// A bind mount that is taken down again whatever the test does.
class BindMount {
public:
    BindMount(const QString& source, const QString& target)
        : m_target(QFile::encodeName(target))
    {
        m_mounted =
            ::mount(QFile::encodeName(source).constData(), m_target.constData(), nullptr, MS_BIND, nullptr) == 0;
    }
    ~BindMount()
    {
        if (m_mounted)
            ::umount2(m_target.constData(), MNT_DETACH);
    }
    BindMount(const BindMount&) = delete;
    BindMount& operator=(const BindMount&) = delete;
    [[nodiscard]] bool mounted() const { return m_mounted; }

private:
    QByteArray m_target;
    bool m_mounted = false;
};

} // namespace

TEST(TrashPipelineSafety, ALinkWithOrWithoutATrailingSlashIsTheLinkNeverItsTarget)
{
    TestHome home;
    const QString project = home.makeDirectory(QStringLiteral("work/project"));
    home.writeFile(QStringLiteral("work/project/main.c"), 4000);
    home.makeSymbolicLink(QStringLiteral(".cache/t/applink"), project);
    home.makeSymbolicLink(QStringLiteral(".cache/t/otherlink"), project);
    const TrashPipeline pipeline({.homeURL = home.path()});

    const TrashSummary dry =
        pipeline.trash({home.path(QStringLiteral(".cache/t/applink/"))}, true, QStringLiteral("cli"));
    EXPECT_EQ(dry.records()[0].status, TrashItemStatus::simulated);
    EXPECT_EQ(dry.records()[0].fileCount, 1); // the link, not the 4 KB it leads to
    EXPECT_LT(dry.records()[0].allocatedBytes, 4000);

    const TrashSummary purge =
        pipeline.purgePermanently({home.path(QStringLiteral(".cache/t/applink/"))}, true, QStringLiteral("cli"));
    EXPECT_EQ(purge.records()[0].status, TrashItemStatus::success) << purge.records()[0].errorMessage->toStdString();
    const TrashSummary moved =
        pipeline.trash({home.path(QStringLiteral(".cache/t/otherlink/"))}, false, QStringLiteral("cli"));
    EXPECT_EQ(moved.records()[0].status, TrashItemStatus::success);

    EXPECT_FALSE(QFileInfo(home.path(QStringLiteral(".cache/t/applink"))).isSymLink());
    EXPECT_FALSE(QFileInfo(home.path(QStringLiteral(".cache/t/otherlink"))).isSymLink());
    EXPECT_EQ(QFileInfo(home.path(QStringLiteral("work/project/main.c"))).size(), 4000);
    EXPECT_TRUE(QFileInfo(home.trashFilesFolder() + QStringLiteral("/otherlink")).isSymLink());
}

TEST(TrashPipelineSafety, AMountPointInsideAnItemFailsItAndLeavesAllOfItInPlace)
{
    TestHome home;
    home.writeFile(QStringLiteral("Documents/thesis.tex"), QByteArray("years of work"));
    home.writeFile(QStringLiteral(".cache/t/a"), 100);
    const QString mountPoint = home.makeDirectory(QStringLiteral(".cache/t/m"));
    const BindMount bind(home.path(QStringLiteral("Documents")), mountPoint);
    if (!bind.mounted())
        GTEST_SKIP() << "this process may not bind-mount (needs root)";
    const TrashPipeline pipeline({.homeURL = home.path()});
    const QString item = home.path(QStringLiteral(".cache/t"));

    for (const bool permanent : {false, true}) {
        const TrashSummary summary = permanent ? pipeline.purgePermanently({item}, true, QStringLiteral("cli"))
                                               : pipeline.trash({item}, false, QStringLiteral("cli"));
        const TrashItemRecord& record = summary.records()[0];
        EXPECT_EQ(record.status, TrashItemStatus::failed);
        EXPECT_EQ(record.errorMessage, QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; nothing "
                                                      "was moved.")
                                           .arg(item, mountPoint));
        EXPECT_TRUE(QFileInfo::exists(home.path(QStringLiteral(".cache/t/a"))));
        EXPECT_TRUE(QFileInfo::exists(home.path(QStringLiteral("Documents/thesis.tex"))));
    }
    const TrashSummary dry = pipeline.trash({item}, true, QStringLiteral("cli"));
    EXPECT_EQ(dry.records()[0].status, TrashItemStatus::failed); // a dry run shows the real verdict
}
