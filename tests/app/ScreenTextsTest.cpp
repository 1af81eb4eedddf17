#include "AppHarness.h"
#include "presentation/AtlasScreen.h"
#include "presentation/AuditCheck.h"
#include "presentation/FootprintPanel.h"
#include "presentation/PlatformWords.h"
#include "presentation/PulseScreen.h"
#include "presentation/RiskPill.h"
#include "presentation/SweepGroup.h"
#include "presentation/SweepScreen.h"
#include "presentation/TuneUpModel.h"

#include "TestHome.h"

#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>

#include <stdexcept>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::pumpUntil;
using kestrow::test::TestHome;

namespace {

DiscoveredItem item(const char* path, StorageCategory category, RiskTier tier, std::int64_t bytes)
{
    return {.path = QLatin1String(path), .category = category, .riskTier = tier, .allocatedSizeBytes = bytes};
}

ScanResult resultOf(std::vector<DiscoveredItem> items)
{
    ScanResult result{.items = std::move(items)};
    result.summary = ScanSummary::from(result.items);
    return result;
}

} // namespace

TEST(ScreenTexts, PulseGroupsPutSafeFirstAndNameTheFirstThreeFinds)
{
    EXPECT_TRUE(SweepGroup::groups(std::nullopt).empty());
    const ScanResult result = resultOf({
        item("/h/.npm/a", StorageCategory::developerCache, RiskTier::safeToDelete, 10),
        item("/h/.npm/b", StorageCategory::developerCache, RiskTier::reviewRequired, 10),
        item("/h/.npm/a", StorageCategory::developerCache, RiskTier::keep, 5),
        item("/h/.npm/c", StorageCategory::developerCache, RiskTier::safeToDelete, 0),
        item("/h/.npm/d", StorageCategory::developerCache, RiskTier::keep, 1),
        item("/h/.npm/e", StorageCategory::developerCache, RiskTier::keep, 1),
        item("/h/models", StorageCategory::aiModelWeights, RiskTier::reviewRequired, 900),
        item("/h/Library/Logs/x", StorageCategory::systemLogs, RiskTier::keep, 5000),
        item("/solo", StorageCategory::dockerVM, RiskTier::safeToDelete, 3),
    });
    const std::vector<SweepGroup> groups = SweepGroup::groups(result);
    ASSERT_EQ(groups.size(), 3u) << "kept-only categories make no group";
    EXPECT_EQ(groups[0].id, StorageCategory::developerCache);
    EXPECT_EQ(groups[0].risk, RiskTier::safeToDelete) << "equal safe and review weigh as safe";
    EXPECT_EQ(groups[0].bytes, 27);
    EXPECT_EQ(groups[0].hint, QStringLiteral("a, b, d"));
    EXPECT_EQ(groups[1].id, StorageCategory::dockerVM);
    EXPECT_TRUE(groups[1].hint.isEmpty());
    EXPECT_EQ(groups[2].risk, RiskTier::reviewRequired);
}

TEST(ScreenTexts, SweepRowsFollowTheFilterAndKeptRowsShowOnlyUnderAll)
{
    const ScanResult kept = resultOf({item("/h/Library/Logs/x", StorageCategory::systemLogs, RiskTier::keep, 5000)});
    EXPECT_EQ(SweepScreen::filteredRows(kept, RiskFilter::all).size(), 1u);
    EXPECT_EQ(SweepScreen::totalBytes(SweepScreen::filteredRows(kept, RiskFilter::all)), 0);
    EXPECT_EQ(SweepScreen::rows(kept, RiskFilter::safe), SweepScreen::Rows::nothingMatches);
    for (const RiskFilter filter : RiskFilter::allCases())
        EXPECT_EQ(SweepScreen::rows(resultOf({}), filter), SweepScreen::Rows::handsOff);

    const ScanResult mixed = resultOf({item("/h/a/b", StorageCategory::developerCache, RiskTier::safeToDelete, 10),
                                       item("/h/m/n", StorageCategory::aiModelWeights, RiskTier::reviewRequired, 90)});
    const std::vector<CategorySummary> all = SweepScreen::filteredRows(mixed, RiskFilter::all);
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].category, StorageCategory::aiModelWeights) << "largest first";
    EXPECT_EQ(SweepScreen::totalBytes(all), 100);
    EXPECT_EQ(SweepScreen::totalBytes(SweepScreen::filteredRows(mixed, RiskFilter::safe)), 10);
    EXPECT_EQ(SweepScreen::itemCountText(all[1]), QStringLiteral("1 items"));
    EXPECT_EQ(RiskPill::forTier(RiskTier::reviewRequired).text, QStringLiteral("Ask me first"));
    EXPECT_EQ(RiskFilter(RiskFilter::safe).rawValue(), QStringLiteral("Safe to sweep"));
}

TEST(ScreenTexts, AtlasBarsStayWithinTheirFolder)
{
    const SpaceNode child{.name = QStringLiteral("big"), .isDirectory = true, .allocatedSizeBytes = 300};
    EXPECT_EQ(AtlasScreen::fraction(child, 0), 0.0);
    EXPECT_EQ(AtlasScreen::fraction(child, 200), 1.0);
    EXPECT_EQ(AtlasScreen::fraction(child, 1200), 0.25);
    EXPECT_EQ(AtlasScreen::rowAccessibilityText(child, 1200), QStringLiteral("folder big, 300 bytes, 25 percent"));
}

TEST(ScreenTexts, TuneUpRunsOneCardAtATimeAndAFailedToggleSpringsBack)
{
    TestHome home;
    AppSettings settings(std::make_unique<QSettings>(home.path(QStringLiteral("settings.ini")), QSettings::IniFormat));
    settings.setAutoScanOnLaunch(false);
    AppState state(false, {.homeURL = home.path(),
                           .settings = &settings,
                           .applicationsURLs = QStringList{home.makeDirectory(QStringLiteral("apps"))}});
    std::atomic<int> runs = 0;
    const auto card = [&](const char* id) {
        return MaintenanceTaskCard{.id = QLatin1String(id),
                                   .title = QStringLiteral("Task ") + QLatin1String(id),
                                   .runningText = QStringLiteral("Working…"),
                                   .action = [&runs] {
                                       ++runs;
                                       QThread::msleep(50);
                                       return QStringLiteral("Done.");
                                   }};
    };
    TuneUpModel model(state, std::vector<MaintenanceTaskCard>{card("one"), card("two")},
                      [](const StartupItem&, bool) -> QString { throw std::runtime_error("refused"); });
    model.run(QStringLiteral("one"));
    model.run(QStringLiteral("one"));
    model.run(QStringLiteral("two"));
    EXPECT_EQ(model.statusRow(), QStringLiteral("Status: Working…"));
    EXPECT_EQ(model.cardAccessibilityText(model.taskCards().front()), QStringLiteral("Task one. Running"));
    pumpUntil([&] { return !model.runningCardID(); });
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(model.statusRow(), QStringLiteral("Status: Done."));

    const StartupItem agent{.id = QUuid::createUuid(), .name = QStringLiteral("agent"), .isEnabled = true};
    model.toggleStartupItem(agent, false);
    model.toggleStartupItem(agent, true);
    EXPECT_FALSE(model.switchPosition(agent)) << "the new position shows at once";
    pumpUntil([&] { return model.toggling().isEmpty(); });
    EXPECT_TRUE(model.switchPosition(agent));
    EXPECT_TRUE(model.taskDidFail());
    EXPECT_EQ(model.statusRow(), QStringLiteral("Status: Could not toggle agent: refused"));
    EXPECT_EQ(state.statusMessage(), QStringLiteral("Ready to scan"));
}

TEST(ScreenTexts, AnEmptyAuditLogVerifiesAndASecondPressWaits)
{
    TestHome home;
    AuditCheck check(home.path());
    QSignalSpy changed(&check, &AuditCheck::changed);
    check.verifyAuditChain();
    check.verifyAuditChain();
    pumpUntil([&] { return !check.isVerifyingAudit(); });
    EXPECT_EQ(changed.count(), 2);
    EXPECT_EQ(check.auditVerificationMessage(),
              QStringLiteral("Valid SHA-256 chain: 0 entries verified with 0 tampering."));
    EXPECT_TRUE(check.recentAuditEntries().empty());
}

TEST(ScreenTexts, TheMainButtonScansAgainWhenNothingSafeWasFound)
{
    TestHome home;
    AppSettings settings(std::make_unique<QSettings>(home.path(QStringLiteral("settings.ini")), QSettings::IniFormat));
    AppState state(false, {.homeURL = home.path(),
                           .settings = &settings,
                           .applicationsURLs = QStringList{home.makeDirectory(QStringLiteral("apps"))}});
    state.runSmartScan();
    EXPECT_EQ(PulseScreen::mainButtonTitle(state), QStringLiteral("Scanning…"));
    EXPECT_EQ(PulseScreen::statusDotColor(state), ThemeColor::accentOrange);
    EXPECT_EQ(SweepScreen::state(state), SweepScreen::State::scanning);
    pumpUntil([&] { return state.isIdle(); });

    ASSERT_TRUE(state.scanResult());
    EXPECT_EQ(PulseScreen::mainButtonTitle(state), PlatformWords::current().scanComputer);
    EXPECT_EQ(PulseScreen::mainButtonSymbol(state), QStringLiteral("magnifyingglass"));
    EXPECT_EQ(PulseScreen::statusDotColor(state), ThemeColor::safeTeal);
    EXPECT_FALSE(PulseScreen::badge(state, AppTab::sweep));
    EXPECT_FALSE(PulseScreen::badge(state, AppTab::uninstall));
    EXPECT_FALSE(PulseScreen::canRunSweep(state));

    state.setIsDioramaBusy(true);
    EXPECT_TRUE(state.isBusy());
    EXPECT_EQ(PulseScreen::mainButtonTitle(state), PlatformWords::current().scanComputer);
}

TEST(ScreenTexts, TheFootprintPanelWaitsForAScanThenListsWhatItFoundLargestFirst)
{
    test::AppHarness harness;
    EXPECT_TRUE(FootprintPanel::isPending(*harness.state));
    EXPECT_TRUE(FootprintPanel::rows(*harness.state).empty());

    harness.home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    harness.home.writeFile(QStringLiteral(".cache/huggingface/hub/models--a--b/blobs/weights"), 900000);
    harness.state->runSmartScan();
    harness.settle();
    const std::vector<FootprintPanel::Row> rows = FootprintPanel::rows(*harness.state);
    ASSERT_GE(rows.size(), 3u);
    EXPECT_EQ(rows.front().label, StorageCategory(StorageCategory::aiModelWeights).displayName());
    EXPECT_EQ(rows.back().label, QStringLiteral("Orphans (0 items)"));
    for (const FootprintPanel::Row& row : rows)
        EXPECT_FALSE(row.value.isEmpty());
}
