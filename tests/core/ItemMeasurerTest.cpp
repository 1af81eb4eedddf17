#include "RefusingFileManager.h"
#include "TestHome.h"

#include "scan/ItemMeasurer.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace kestrow;
using kestrow::test::RefusingFileManager;
using kestrow::test::TestHome;

TEST(ItemMeasurer, CountsHardLinksOnceAndNeverEntersLinks)
{
    TestHome home;
    home.writeFile(QStringLiteral("big/payload"), 4 * 1024 * 1024);
    home.writeFile(QStringLiteral("cache/one"), 1000000);
    home.makeHardLink(QStringLiteral("cache/sub/two"), QStringLiteral("cache/one"));
    home.writeFile(QStringLiteral("cache/.hidden"), 10);
    home.makeSymbolicLink(QStringLiteral("cache/link-to-big"), home.path(QStringLiteral("big")));
    home.makeSymbolicLink(QStringLiteral("cache/dangling"), home.path(QStringLiteral("nowhere")));

    const FileManager fileManager;
    const MeasuredMetrics metrics = ItemMeasurer(fileManager).measureItem(home.path(QStringLiteral("cache")));
    EXPECT_EQ(metrics.fileCount, 3); // both names of the hard link, and the hidden file
    EXPECT_EQ(metrics.logicalBytes, 1000010);
    EXPECT_GE(metrics.allocatedBytes, 1000000);
    EXPECT_LT(metrics.allocatedBytes, 2 * 1024 * 1024) << "the linked 4 MiB folder must not count";
    ASSERT_TRUE(metrics.lastModifiedDate && metrics.lastAccessedDate);
    EXPECT_LE(std::abs(metrics.lastModifiedDate->secsTo(QDateTime::currentDateTimeUtc())), 120);
    EXPECT_FALSE(metrics.requiresFullDiskAccess);
}

TEST(ItemMeasurer, EmptyMissingAndSingleFiles)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("empty"));
    home.writeFile(QStringLiteral("file.bin"), 12345);
    const FileManager fileManager;
    const ItemMeasurer measurer(fileManager);

    const MeasuredMetrics empty = measurer.measureItem(home.path(QStringLiteral("empty")));
    EXPECT_EQ(empty.fileCount, 1);
    EXPECT_EQ(empty.logicalBytes, 0);
    EXPECT_EQ(empty.allocatedBytes, 0);
    EXPECT_TRUE(empty.hasContent());

    const MeasuredMetrics missing = measurer.measureItem(home.path(QStringLiteral("missing")));
    EXPECT_EQ(missing, MeasuredMetrics{});
    EXPECT_FALSE(missing.hasContent());

    const MeasuredMetrics file = measurer.measureItem(home.path(QStringLiteral("file.bin")));
    EXPECT_EQ(file.fileCount, 1);
    EXPECT_EQ(file.logicalBytes, 12345);
    EXPECT_GE(file.allocatedBytes, 12288);
    EXPECT_TRUE(file.lastModifiedDate.has_value());

    // A link is measured as the link, not as what it leads to; one leading nowhere as nothing.
    home.writeFile(QStringLiteral("big/payload"), 1024 * 1024);
    for (const QString& target : {QStringLiteral("big"), QStringLiteral("big/payload")}) {
        const QString link =
            home.makeSymbolicLink(QStringLiteral("link-to-") + QString::number(target.size()), home.path(target));
        const FileStatus own = *fileManager.status(link);
        for (const QString& named : {link, QString(link + QLatin1Char('/'))}) {
            const MeasuredMetrics linked = measurer.measureItem(named);
            EXPECT_EQ(linked.fileCount, 1);
            EXPECT_EQ(linked.logicalBytes, own.size);
            EXPECT_EQ(linked.allocatedBytes, own.allocatedSize);
        }
    }
    home.makeSymbolicLink(QStringLiteral("dangling"), home.path(QStringLiteral("nowhere")));
    EXPECT_EQ(measurer.measureItem(home.path(QStringLiteral("dangling"))), MeasuredMetrics{});
}

TEST(ItemMeasurer, UnreadableFoldersFlagFullDiskAccessOnlyWhenAsked)
{
    TestHome home;
    home.writeFile(QStringLiteral("logs/readable/a.log"), 100);
    home.writeFile(QStringLiteral("logs/locked/b.log"), 100);
    const QString logs = home.path(QStringLiteral("logs"));
    const auto isPermissionError = [](int error) { return error == EACCES || error == EPERM; };

    const RefusingFileManager refusing({home.path(QStringLiteral("logs/locked"))});
    const MeasuredMetrics refused = ItemMeasurer(refusing, isPermissionError).measureItem(logs);
    EXPECT_TRUE(refused.requiresFullDiskAccess);
    EXPECT_EQ(refused.fileCount, 1) << "the walk goes on past the refused folder";
    EXPECT_FALSE(ItemMeasurer(refusing).measureItem(logs).requiresFullDiskAccess);

    if (TestHome::permissionsAreIgnored())
        return; // root reads everything; the injected refusal above covers the logic
    QFile::setPermissions(home.path(QStringLiteral("logs/locked")), QFileDevice::Permissions{});
    const FileManager real;
    const MeasuredMetrics seen = ItemMeasurer(real, isPermissionError).measureItem(logs);
    EXPECT_TRUE(seen.requiresFullDiskAccess);
    EXPECT_EQ(seen.fileCount, 1) << "the walk goes on past the locked folder";
}

TEST(ItemMeasurer, StopsWalkingWhenAskedToStop)
{
    TestHome home;
    for (int i = 0; i < 50; ++i)
        home.writeFile(QStringLiteral("tree/d%1/f").arg(i), 10);
    std::stop_source source;
    source.request_stop();
    const FileManager fileManager;
    const MeasuredMetrics metrics =
        ItemMeasurer(fileManager).measureItem(home.path(QStringLiteral("tree")), source.get_token());
    EXPECT_LT(metrics.logicalBytes, 500);
}
