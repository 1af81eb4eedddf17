#include "TestHome.h"

#include "platform/FileManager.h"
#include "scan/ItemMeasurer.h"
#include "scan/MeasuringBatch.h"
#include "scan/TargetScan.h"
#include "scan/ThermalGovernor.h"
#include "support/KestrowError.h"

#include <gtest/gtest.h>

#include <QUuid>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// Trees of different sizes, so that walks end out of order: tree k has k folders of k + 1
// files, and each tree a second name of a file of its own.
QStringList buildTrees(const TestHome& home, int count)
{
    QStringList roots;
    for (int tree = 1; tree <= count; ++tree) {
        for (int folder = 0; folder < tree; ++folder)
            for (int file = 0; file <= tree; ++file)
                home.writeFile(QStringLiteral("t%1/d%2/f%3").arg(tree).arg(folder).arg(file), 10 * tree + file);
        home.makeHardLink(QStringLiteral("t%1/link").arg(tree), QStringLiteral("t%1/d0/f0").arg(tree));
        roots.append(home.path(QStringLiteral("t%1").arg(tree)));
    }
    return roots;
}

} // namespace

TEST(MeasuringBatch, LocationsMeasuredSideBySideMatchOneAtATime)
{
    TestHome home;
    QStringList paths = buildTrees(home, 12);
    paths.append(home.writeFile(QStringLiteral("plain"), 300));
    paths.append(home.path(QStringLiteral("missing")));
    const FileManager fileManager;
    const ItemMeasurer alone(fileManager, {}, ThermalGovernor::unrestricted(1));
    for (int threads : {1, 2, 4}) {
        const ItemMeasurer measurer(fileManager, {}, ThermalGovernor::unrestricted(threads));
        MeasuringBatch batch(measurer, {});
        std::vector<std::size_t> indexes;
        for (const QString& path : paths)
            indexes.push_back(batch.add(path));
        // Taken last first: the taker walks the others meanwhile.
        for (qsizetype index = paths.size() - 1; index >= 0; --index)
            EXPECT_EQ(batch.take(indexes[static_cast<std::size_t>(index)]), alone.measureItem(paths[index]))
                << paths[index].toStdString() << " on " << threads << " threads";
    }
}

TEST(MeasuringBatch, ItemsComeOutInTheOrderAskedAndAStopEndsEverything)
{
    TestHome home;
    const QStringList paths = buildTrees(home, 10);
    const FileManager fileManager;
    const ItemMeasurer measurer(fileManager, {}, ThermalGovernor::unrestricted(2));
    const auto item = [](const QString& path, const MeasuredMetrics& metrics) {
        return DiscoveredItem{.id = QUuid::createUuid(),
                              .path = path,
                              .category = StorageCategory::developerCache,
                              .riskTier = RiskTier::safeToDelete,
                              .allocatedSizeBytes = metrics.allocatedBytes,
                              .fileCount = metrics.fileCount};
    };

    QStringList reported;
    const ScanProgressCallback progress = [&](const ScanProgress& report) { reported.append(report.currentPath); };
    TargetScan scan(measurer, progress, {});
    // Largest first, so that the small ones are ready long before it.
    for (qsizetype index = paths.size() - 1; index >= 0; --index) {
        const QString path = paths[index];
        scan.emitMeasured(path, [&, path](const MeasuredMetrics& metrics) { return item(path, metrics); });
        if (index == 5)
            scan.emitUnclassified(item(QStringLiteral("/stand-in"), {}));
    }
    const std::vector<DiscoveredItem> items = scan.takeItems();
    QStringList expected(paths.rbegin(), paths.rend());
    expected.insert(5, QStringLiteral("/stand-in"));
    QStringList emitted;
    for (const DiscoveredItem& each : items)
        emitted.append(each.path);
    EXPECT_EQ(emitted, expected);
    EXPECT_EQ(reported, expected);
    EXPECT_EQ(items.front().fileCount, 10 * 11 + 1);

    // Stopped with walks queued and under way: every take returns, and the scan's items are
    // refused rather than passed off as complete.
    std::stop_source stop;
    TargetScan stopped(measurer, progress, stop.get_token());
    for (const QString& path : paths)
        stopped.emitMeasured(path, [&, path](const MeasuredMetrics& metrics) { return item(path, metrics); });
    stop.request_stop();
    EXPECT_THROW((void)stopped.takeItems(), CancellationError);
}
