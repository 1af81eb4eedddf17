#include "TestHome.h"

#include "cleanup/TrashPipeline.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <stdio.h>
#include <thread>
#include <unistd.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

constexpr int fileCount = 400;

QString name(int i)
{
    return QStringLiteral("f%1").arg(i, 4, 10, QLatin1Char('0'));
}

// Runs a batch over `.cache/t/f*` while another thread keeps exchanging `.cache/t` with a link
// to ~/Documents, which holds files of the same names. Whatever the timing, nothing in
// Documents may be moved or removed.
void runWhileParentIsSwapped(bool permanent)
{
    TestHome home;
    QStringList paths;
    for (int i = 0; i < fileCount; ++i) {
        paths.append(home.writeFile(QStringLiteral(".cache/t/") + name(i), QByteArray("cache")));
        home.writeFile(QStringLiteral("Documents/") + name(i), QByteArray("keep me"));
    }
    home.makeSymbolicLink(QStringLiteral(".cache/tlink"), home.path(QStringLiteral("Documents")));
    const QByteArray real = QFile::encodeName(home.path(QStringLiteral(".cache/t")));
    const QByteArray link = QFile::encodeName(home.path(QStringLiteral(".cache/tlink")));

    std::atomic<bool> done = false;
    std::atomic<int> exchanges = 0;
    std::thread swapper([&] {
        while (!done) {
            if (::renameat2(AT_FDCWD, real.constData(), AT_FDCWD, link.constData(), RENAME_EXCHANGE) == 0)
                ++exchanges;
        }
    });
    const TrashPipeline pipeline({.homeURL = home.path()});
    const TrashSummary summary = permanent ? pipeline.purgePermanently(paths, true, QStringLiteral("cli"))
                                           : pipeline.trash(paths, false, QStringLiteral("cli"));
    done = true;
    swapper.join();
    EXPECT_GT(exchanges.load(), 10);

    for (int i = 0; i < fileCount; ++i) {
        QFile kept(home.path(QStringLiteral("Documents/") + name(i)));
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly)) << "moved out of Documents: " << name(i).toStdString();
        EXPECT_EQ(kept.readAll(), QByteArray("keep me"));
    }
    // Every success came out of the cache folder, wherever the swapping left it.
    const QString cacheNow = QFileInfo(home.path(QStringLiteral(".cache/t"))).isSymLink()
                                 ? home.path(QStringLiteral(".cache/tlink"))
                                 : home.path(QStringLiteral(".cache/t"));
    const auto left = QDir(cacheNow).entryList(QDir::Files).size();
    EXPECT_EQ(left + summary.successCount(), fileCount);
    if (!permanent) {
        const auto infos = QDir(home.trashInfoFolder()).entryList(QDir::Files);
        EXPECT_EQ(infos.size(), summary.successCount());
        for (const QString& info : infos) {
            QFile file(home.trashInfoFolder() + QLatin1Char('/') + info);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_FALSE(file.readAll().contains("Documents")) << info.toStdString();
        }
    }
}

} // namespace

TEST(TrashRace, AParentSwappedForALinkToProtectedGroundNeverReachesIt)
{
    runWhileParentIsSwapped(false);
}

TEST(TrashRace, APurgeWithAParentSwappedForALinkNeverDeletesProtectedGround)
{
    runWhileParentIsSwapped(true);
}
