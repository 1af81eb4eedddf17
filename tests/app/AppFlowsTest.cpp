#include "settings/AppSettings.h"
#include "state/AppState.h"
#include "state/SweepConfirmation.h"

#include "AppHarness.h"

#include "cleanup/AuditLogger.h"
#include "presentation/Theme.h"

#include <QFile>
#include <QSignalSpy>

#include <atomic>
#include <stdexcept>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::AppHarness;

namespace {

// Answers as told and remembers what it was asked.
class FakeConfirmation : public SweepConfirmation {
public:
    explicit FakeConfirmation(bool answer)
        : m_answer(answer)
    {
    }
    bool confirm(const SweepConfirmationRequest& request) override
    {
        requests.push_back(request);
        return m_answer;
    }
    std::vector<SweepConfirmationRequest> requests;

private:
    bool m_answer;
};

const QString scanning = QStringLiteral("Scanning your disk: read-only, nothing is touched.");

QString scanComplete(const AppState& state)
{
    return QStringLiteral("Scan complete: ") + Theme::byteText(state.scanResult()->summary.totalAllocatedBytes) +
           QStringLiteral(" you can take back.");
}

} // namespace

TEST(AppFlows, ASweepMovesTheSafeItemsLogsThemAndScansAgain)
{
    AppHarness harness({.autoScan = true});
    const QString wheel = harness.home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    harness.settle();
    ASSERT_TRUE(harness.state->scanResult());
    ASSERT_EQ(harness.messages, QStringList({scanning, scanComplete(*harness.state)}));
    const std::int64_t freed = harness.state->scanResult()->summary.safeFreeableBytes;
    ASSERT_GT(freed, 0);

    bool scannedWhileCleaning = false;
    QObject::connect(harness.state.get(), &AppState::isScanningChanged,
                     [&] { scannedWhileCleaning |= harness.state->isScanning() && harness.state->isCleaning(); });
    QSignalSpy busy(harness.state.get(), &AppState::isBusyChanged);
    harness.messages.clear();
    harness.state->cleanSafeItems();
    EXPECT_TRUE(harness.state->isCleaning());
    harness.settle();

    EXPECT_EQ(harness.messages, QStringList({QStringLiteral("Moving safe items to the Trash: nothing is deleted."),
                                             QStringLiteral("Swept 1 items: ") + Theme::byteText(freed) +
                                                 QStringLiteral(" back in your hands."),
                                             scanning, scanComplete(*harness.state)}));
    EXPECT_TRUE(scannedWhileCleaning);
    EXPECT_EQ(busy.count(), 2) << "busy from the move to the end of the rescan, without a gap";
    EXPECT_FALSE(harness.state->isBusy());
    ASSERT_TRUE(harness.state->lastCleanupSummary());
    EXPECT_EQ(harness.state->lastCleanupSummary()->totalItemsCount(), 1);
    const DiskCityModel city = harness.state->cityModel();
    EXPECT_TRUE(city.hasCleaned && !city.isCleaning && !city.isScanning) << "the city follows the state";
    EXPECT_EQ(harness.state->scanResult()->summary.safeFreeableBytes, 0);
    EXPECT_FALSE(QFile::exists(wheel));

    AuditLogger log({.homeURL = harness.home.path()});
    const std::vector<AuditLogEntry> entries = log.readEntries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries.front().client, QStringLiteral("gui"));
}

TEST(AppFlows, AFailedScanKeepsTheOldResultAndInsideASweepStillEndsIt)
{
    std::atomic<int> scans = 0;
    AppHarness harness({.adjust = [&](AppEnvironment& environment) {
        environment.scan = [&](DeepScanEngine& engine, const std::optional<CategorySet>& categories,
                               std::stop_token stop) {
            if (scans++ > 0)
                throw std::runtime_error("the disk went away");
            return engine.scan(categories, {}, stop);
        };
    }});
    const QString wheel = harness.home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    harness.state->runSmartScan();
    harness.settle();
    const std::int64_t freed = harness.state->scanResult()->summary.safeFreeableBytes;
    ASSERT_GT(freed, 0);

    QSignalSpy vitals(harness.state.get(), &AppState::vitalsChanged);
    harness.messages.clear();
    harness.state->cleanSafeItems();
    harness.settle();
    const QString failed = QStringLiteral("Scan failed: the disk went away");
    EXPECT_EQ(harness.messages, QStringList({QStringLiteral("Moving safe items to the Trash: nothing is deleted."),
                                             QStringLiteral("Swept 1 items: ") + Theme::byteText(freed) +
                                                 QStringLiteral(" back in your hands."),
                                             scanning, failed}));
    EXPECT_FALSE(harness.state->isCleaning() || harness.state->isScanning());
    EXPECT_EQ(vitals.count(), 2) << "at the end of the scan and of the Sweep";
    EXPECT_FALSE(QFile::exists(wheel));
    EXPECT_EQ(harness.state->scanResult()->summary.safeFreeableBytes, freed) << "the old result stays";

    harness.messages.clear();
    harness.state->runSmartScan();
    harness.settle();
    EXPECT_EQ(harness.messages, QStringList({scanning, failed}));
}

TEST(AppFlows, ASweepTakesOnlyWhatTheCurrentSettingsAllowAndAsksWhenTold)
{
    auto refusing = std::make_shared<FakeConfirmation>(false);
    AppHarness harness({.adjust = [&](AppEnvironment& environment) { environment.confirmation = refusing; }});
    harness.state->cleanSafeItems();
    EXPECT_EQ(harness.state->statusMessage(), QStringLiteral("Ready to scan")) << "no scan, no word";
    EXPECT_TRUE(harness.messages.isEmpty());

    const QString wheel = harness.home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    harness.state->runSmartScan();
    harness.settle();
    ASSERT_GT(harness.state->scanResult()->summary.safeFreeableBytes, 0);

    // Switched off after the scan: the item still stands in the result but is not swept.
    QSignalSpy cleaning(harness.state.get(), &AppState::isCleaningChanged);
    harness.settings.setTargetUvPython(false);
    harness.state->cleanSafeItems();
    EXPECT_EQ(harness.state->statusMessage(),
              QStringLiteral("Nothing to sweep: every safe item is excluded or in a target you turned off."));
    harness.settings.setTargetUvPython(true);
    harness.settings.addExclusion(QStringLiteral("~/.cache/uv"));
    harness.state->cleanSafeItems();
    EXPECT_EQ(harness.state->statusMessage(),
              QStringLiteral("Nothing to sweep: every safe item is excluded or in a target you turned off."));
    EXPECT_EQ(cleaning.count(), 0);

    harness.settings.removeExclusion(0);
    harness.settings.setConfirmBeforeClean(true);
    harness.state->cleanSafeItems();
    EXPECT_EQ(harness.state->statusMessage(), QStringLiteral("Sweep cancelled. Nothing was moved."));
    ASSERT_EQ(refusing->requests.size(), 1u);
    EXPECT_TRUE(refusing->requests.front().message.startsWith(QStringLiteral("Move 1 item (")));
    EXPECT_EQ(cleaning.count(), 0);
    EXPECT_TRUE(QFile::exists(wheel));
}

TEST(AppFlows, TheConfirmationListsTheSelectionByCategoryLargestFirst)
{
    DiscoveredItem model{
        .path = QStringLiteral("/h/m"), .category = StorageCategory::aiModelWeights, .allocatedSizeBytes = 3000};
    DiscoveredItem cache{.path = QStringLiteral("/h/c"), .allocatedSizeBytes = 1000};
    const SweepConfirmationRequest one = SweepConfirmationRequest::forSelection({cache});
    EXPECT_EQ(one.message, QStringLiteral("Move 1 item (1 KB) to the Trash?"));
    EXPECT_EQ(one.buttons, QStringList({QStringLiteral("Move to Trash"), QStringLiteral("Cancel")}));

    const SweepConfirmationRequest two = SweepConfirmationRequest::forSelection({cache, model});
    EXPECT_EQ(two.message, QStringLiteral("Move 2 items (4 KB) to the Trash?"));
    const QStringList lines = two.body.split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], StorageCategory(StorageCategory::aiModelWeights).displayName() + QStringLiteral(": 3 KB"));
    EXPECT_EQ(lines[1], StorageCategory(StorageCategory::developerCache).displayName() + QStringLiteral(": 1 KB"));
    EXPECT_TRUE(lines[2].isEmpty());
    EXPECT_TRUE(lines[3].startsWith(QStringLiteral("Everything stays restorable with ")));
}

TEST(AppFlows, AutoScanFollowsTheSettingWhileTheInventoryAlwaysLoads)
{
    AppHarness harness(
        {.autoScan = true, .settings = [](AppSettings& settings) { settings.setAutoScanOnLaunch(false); }});
    QSignalSpy scanningChanged(harness.state.get(), &AppState::isScanningChanged);
    harness.settle();
    EXPECT_EQ(scanningChanged.count(), 0);
    EXPECT_EQ(harness.state->statusMessage(), QStringLiteral("Ready to scan"));
    EXPECT_TRUE(harness.state->vitals().has_value());
}

TEST(AppFlows, TheAtlasWalksDownAndBackWithoutScanningAgain)
{
    AppHarness harness;
    harness.home.writeFile(QStringLiteral("a/b/c/d/file"), 4096);
    harness.home.writeFile(QStringLiteral("loose"), 10);
    harness.state->loadSpaceLens();
    EXPECT_TRUE(harness.state->isAnalyzingSpace());
    harness.state->drillInAtlas(
        {.path = harness.home.path(QStringLiteral("a")), .name = QStringLiteral("a"), .isDirectory = true});
    harness.settle();
    ASSERT_EQ(harness.state->atlasStack().size(), 1u) << "no drilling while a survey runs";

    const auto child = [&](const QString& name) {
        for (const SpaceNode& node : *harness.state->atlasStack().back().children)
            if (node.name == name)
                return node;
        ADD_FAILURE() << name.toStdString();
        return SpaceNode{};
    };
    harness.state->drillInAtlas(child(QStringLiteral("loose")));
    EXPECT_FALSE(harness.state->isAnalyzingSpace());
    for (const QString& name : {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}) {
        harness.state->drillInAtlas(child(name));
        harness.settle();
    }
    ASSERT_EQ(harness.state->atlasStack().size(), 4u);
    EXPECT_EQ(harness.state->atlasStack().back().name, QStringLiteral("c"));

    QSignalSpy stackChanged(harness.state.get(), &AppState::atlasStackChanged);
    for (const int index : {3, -1, 4})
        harness.state->drillToAtlas(index);
    EXPECT_EQ(stackChanged.count(), 0);
    harness.state->drillOutAtlas();
    EXPECT_EQ(harness.state->atlasStack().size(), 3u);
    harness.state->drillToAtlas(0);
    EXPECT_EQ(harness.state->atlasStack().size(), 1u);
    harness.state->drillOutAtlas();
    EXPECT_EQ(harness.state->atlasStack().size(), 1u);

    harness.state->drillInAtlas(child(QStringLiteral("a")));
    harness.settle();
    harness.state->loadSpaceLens();
    harness.settle();
    EXPECT_EQ(harness.state->atlasStack().size(), 1u);
    EXPECT_TRUE(harness.messages.isEmpty());
}

TEST(AppFlows, AnOrphanSweepCountsInTheSingularAndLeavesExclusionsAlone)
{
    AppHarness harness;
    const auto orphan = [&](const QString& relative) {
        return AppLeftover{
            .candidateAppName = relative,
            .path =
                harness.home.writeFile(QStringLiteral(".config/") + relative + QStringLiteral("/x"), 5000).chopped(2)};
    };
    const std::vector<AppLeftover> two{orphan(QStringLiteral("gone-one")), orphan(QStringLiteral("gone-two"))};
    harness.settings.addExclusion(QStringLiteral("~/.config/gone-one"));
    harness.state->cleanLeftovers({two.front()});
    EXPECT_FALSE(harness.state->isLoadingApps());
    EXPECT_TRUE(harness.messages.isEmpty());

    harness.state->cleanLeftovers(two);
    harness.settle();
    ASSERT_EQ(harness.messages.size(), 2);
    EXPECT_EQ(harness.messages[0], QStringLiteral("Sweeping 1 orphan…"));
    EXPECT_TRUE(harness.messages[1].startsWith(QStringLiteral("Swept 1 orphan: ")))
        << harness.messages[1].toStdString();
    EXPECT_FALSE(harness.state->isLoadingApps());
    EXPECT_TRUE(QFile::exists(two.front().path));
    EXPECT_FALSE(QFile::exists(two.back().path));

    harness.settings.removeExclusion(0);
    harness.home.writeFile(QStringLiteral(".config/gone-two/x"), 5000);
    harness.state->cleanLeftovers(two);
    harness.settle();
    EXPECT_EQ(harness.messages[2], QStringLiteral("Sweeping 2 orphans…"));
    EXPECT_TRUE(harness.messages[3].startsWith(QStringLiteral("Swept 2 orphans: ")));
}

TEST(AppFlows, StartupItemsLoadBehindTheScreenWithoutABusyState)
{
    AppHarness harness;
    QSignalSpy loading(harness.state.get(), &AppState::isLoadingStartupChanged);
    QSignalSpy items(harness.state.get(), &AppState::startupItemsChanged);
    harness.state->loadStartupItems(false);
    harness.settle();
    EXPECT_EQ(loading.count(), 0);
    EXPECT_EQ(items.count(), 1);
    harness.state->loadStartupItems(true);
    EXPECT_TRUE(harness.state->isBusy());
    harness.settle();
    EXPECT_EQ(loading.count(), 2);
    EXPECT_FALSE(harness.state->isBusy());
}
