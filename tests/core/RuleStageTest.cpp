#include "TestHome.h"

#include "rules/RuleRegistry.h"
#include "scan/DeepScanEngine.h"
#include "scan/RuleStage.h"

#include <QDir>

#include <gtest/gtest.h>

#include <map>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

RuleDefinition rule(const char* id, QStringList patterns, RiskTier tier = RiskTier::keep,
                    StorageCategory category = StorageCategory::dynamicRule)
{
    return RuleDefinition{.id = QString::fromUtf8(id),
                          .name = QStringLiteral("Rule ") + QString::fromUtf8(id),
                          .description = QStringLiteral("Test rule."),
                          .category = category,
                          .riskTier = tier,
                          .patterns = std::move(patterns)};
}

struct StageRun {
    std::vector<DiscoveredItem> items;
    std::vector<ScanProgress> progress;

    // Items by path relative to the home.
    [[nodiscard]] std::map<QString, DiscoveredItem> byPath(const TestHome& home) const
    {
        std::map<QString, DiscoveredItem> result;
        for (const DiscoveredItem& item : items)
            result.emplace(item.path.mid(home.path().size() + 1), item);
        return result;
    }
};

StageRun runStage(const TestHome& home, const RuleRegistry& registry, CategorySet categories,
                  std::shared_ptr<const FileManager> fileManager = {}, std::stop_token stop = {})
{
    const RuleStage stage({.homeURL = home.path(),
                           .fileManager = std::move(fileManager),
                           .thermalGovernor = ThermalGovernor::unrestricted(4)});
    StageRun run;
    run.items = stage.scanRegistryRules(
        registry, categories, [&](const ScanProgress& progress) { run.progress.push_back(progress); }, stop);
    return run;
}

// Removes a folder right after the stage has found it, before it is measured.
class VanishingFileManager : public FileManager {
public:
    explicit VanishingFileManager(QString victim)
        : m_victim(std::move(victim))
    {
    }
    bool fileExists(const QString& path, bool* isDirectory) const override
    {
        const bool exists = FileManager::fileExists(path, isDirectory);
        if (exists && path == m_victim)
            QDir(path).removeRecursively();
        return exists;
    }

private:
    QString m_victim;
};

// Refuses to list one folder; asks the scan to stop at the first listing when given a source.
class ListingFileManager : public FileManager {
public:
    DirectoryListing contentsOfDirectory(const QString& path, bool skipHidden) const override
    {
        if (stopOnFirstListing)
            stopOnFirstListing->request_stop();
        if (path == refused)
            return DirectoryListing{.entries = {}, .errorCode = EACCES};
        return FileManager::contentsOfDirectory(path, skipHidden);
    }
    QString refused;
    std::stop_source* stopOnFirstListing = nullptr;
};

} // namespace

TEST(RuleStage, ResolvesGlobstarsWithoutHiddenFoldersOrLinks)
{
    TestHome home;
    home.writeFile(QStringLiteral("Projects/build/a.o"), 100);
    home.writeFile(QStringLiteral("Projects/app/build/b.o"), 200);
    home.writeFile(QStringLiteral("Projects/app/deep/er/build/c.o"), 300);
    home.writeFile(QStringLiteral("Projects/.hidden/build/d.o"), 400);
    home.writeFile(QStringLiteral("Projects/skip/build/e.o"), 500);
    home.writeFile(QStringLiteral("outside/build/f.o"), 600);
    home.makeSymbolicLink(QStringLiteral("Projects/link"), home.path(QStringLiteral("outside")));
    home.makeDirectory(QStringLiteral("data/empty"));
    home.writeFile(QStringLiteral(".tool/cache/blob"), 700);
    home.writeFile(QStringLiteral("logs/a.log"), 10);
    home.writeFile(QStringLiteral("logs/.b.log"), 10);
    home.writeFile(QStringLiteral("logs/sub.log/inner"), 10);
    home.makeSymbolicLink(QStringLiteral("logs/c.log"), home.path(QStringLiteral("logs/a.log")));

    RuleRegistry registry({.homeURL = home.path()});
    RuleDefinition builds = rule("custom.builds", {QStringLiteral("~/Projects/**/build")}, RiskTier::keep);
    builds.excludedPatterns = {QStringLiteral("~/Projects/skip/**")};
    registry.registerRule(builds);
    registry.registerRule(rule("custom.data",
                               {QStringLiteral("~/data/empty/**"), QStringLiteral("~/.tool/cache/**"),
                                QStringLiteral("~/missing/*/y"), QStringLiteral("~/logs/*.log")},
                               RiskTier::safeToDelete));

    const StageRun run = runStage(home, registry, {StorageCategory::dynamicRule});
    const auto items = run.byPath(home);
    QStringList paths;
    for (const auto& [path, item] : items)
        paths.append(path);
    EXPECT_EQ(paths, QStringList({QStringLiteral(".tool/cache"), QStringLiteral("Projects/app/build"),
                                  QStringLiteral("Projects/app/deep/er/build"), QStringLiteral("Projects/build"),
                                  QStringLiteral("data/empty"), QStringLiteral("logs/a.log"),
                                  QStringLiteral("logs/sub.log")}));

    const DiscoveredItem& deep = items.at(QStringLiteral("Projects/app/deep/er/build"));
    EXPECT_EQ(deep.riskTier, RiskTier::keep) << "the rule's own tier, not the classifier's";
    EXPECT_EQ(deep.category, StorageCategory::dynamicRule);
    EXPECT_EQ(deep.itemDescription, QStringLiteral("Rule custom.builds"));
    EXPECT_EQ(deep.ruleId, QStringLiteral("custom.builds"));
    EXPECT_EQ(deep.logicalSizeBytes, 300);
    EXPECT_FALSE(deep.isOrphaned || deep.isLocked);
    const DiscoveredItem& empty = items.at(QStringLiteral("data/empty"));
    EXPECT_EQ(empty.fileCount, 1) << "an empty folder still gives an item";
    EXPECT_EQ(empty.allocatedSizeBytes, 0);
    EXPECT_EQ(items.at(QStringLiteral(".tool/cache")).logicalSizeBytes, 700) << "literal segments may be hidden";

    ASSERT_EQ(run.progress.size(), run.items.size());
    EXPECT_EQ(run.progress[0].currentPath, run.items[0].path);
    EXPECT_EQ(run.progress[0].itemsFound, 1);
    EXPECT_EQ(run.progress[0].currentCategory, StorageCategory::dynamicRule);
    EXPECT_EQ(run.progress[0].totalLogicalBytesScanned, run.items[0].logicalSizeBytes);
    EXPECT_FALSE(run.progress[0].fractionCompleted);
}

TEST(RuleStage, PicksRulesByCategoryAndSkipsThoseTheScannersCover)
{
    TestHome home;
    home.writeFile(QStringLiteral("go/pkg/mod/cache/download/x.zip"), 1000);
    home.writeFile(QStringLiteral("Library/Caches/com.example/blob"), 1000);
    home.writeFile(QStringLiteral("Library/Mail Downloads/a.pdf"), 1000);
    home.writeFile(QStringLiteral("big/file.iso"), 1000);
    RuleRegistry registry({.homeURL = home.path()});
    registry.registerRule(rule("sys.mail.downloads", {QStringLiteral("~/Library/Mail Downloads/**")},
                               RiskTier::reviewRequired, StorageCategory::mailDownloads));
    registry.registerRule(
        rule("custom.large", {QStringLiteral("~/big/*.iso")}, RiskTier::reviewRequired, StorageCategory::largeFiles));

    const auto all = runStage(home, registry,
                              {StorageCategory::developerCache, StorageCategory::systemCaches,
                               StorageCategory::mailDownloads, StorageCategory::largeFiles})
                         .byPath(home);
    ASSERT_EQ(all.size(), 3u) << "sys.user.caches is the scanners' business";
    EXPECT_EQ(all.at(QStringLiteral("go/pkg/mod/cache")).ruleId, QStringLiteral("dev.go.cache"));
    EXPECT_EQ(all.at(QStringLiteral("go/pkg/mod/cache")).itemDescription, QStringLiteral("Go Module & Build Cache"));
    EXPECT_EQ(all.at(QStringLiteral("Library/Mail Downloads")).ruleId, QStringLiteral("sys.mail.downloads"))
        << "a user's rule that reuses a scanner's id runs";
    EXPECT_TRUE(all.contains(QStringLiteral("big/file.iso")));

    const auto large = runStage(home, registry, {StorageCategory::largeFiles}).byPath(home);
    ASSERT_EQ(large.size(), 1u);
    EXPECT_TRUE(large.contains(QStringLiteral("big/file.iso")));

    registry.setRuleEnabled(QStringLiteral("custom.large"), false);
    EXPECT_TRUE(runStage(home, registry, {StorageCategory::largeFiles}).items.empty());
}

TEST(RuleStage, VanishedAndUnreadableFoldersGiveNothingQuietly)
{
    TestHome home;
    home.writeFile(QStringLiteral("work/a/tmp/x"), 10);
    home.writeFile(QStringLiteral("work/b/tmp/y"), 10);
    home.writeFile(QStringLiteral("work/c/tmp/z"), 10);
    RuleRegistry registry({.homeURL = home.path()});
    registry.registerRule(rule("custom.tmp", {QStringLiteral("~/work/*/tmp")}));

    auto fileManager = std::make_shared<ListingFileManager>();
    fileManager->refused = home.path(QStringLiteral("work"));
    EXPECT_TRUE(runStage(home, registry, {StorageCategory::dynamicRule}, fileManager).items.empty());

    const auto vanishing = std::make_shared<VanishingFileManager>(home.path(QStringLiteral("work/b/tmp")));
    const auto items = runStage(home, registry, {StorageCategory::dynamicRule}, vanishing).byPath(home);
    EXPECT_EQ(items.size(), 2u);
    EXPECT_FALSE(items.contains(QStringLiteral("work/b/tmp")));
}

TEST(RuleStage, CancellationStopsTheStageEvenInsideAWalk)
{
    TestHome home;
    home.writeFile(QStringLiteral("work/a/tmp/x"), 10);
    RuleRegistry registry({.homeURL = home.path()});
    registry.registerRule(rule("zzz.last", {QStringLiteral("~/work/**/tmp")}));

    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_THROW((void)runStage(home, registry, {StorageCategory::dynamicRule}, {}, stopped.get_token()),
                 CancellationError);

    // A stop that arrives while the last rule's pattern is being resolved still counts.
    std::stop_source midway;
    auto fileManager = std::make_shared<ListingFileManager>();
    fileManager->stopOnFirstListing = &midway;
    EXPECT_THROW((void)runStage(home, registry, {StorageCategory::dynamicRule}, fileManager, midway.get_token()),
                 CancellationError);
}

TEST(RuleStage, EngineMergesOverlappingRulesAndRunsOnlyWithARegistry)
{
    TestHome home;
    home.writeFile(QStringLiteral("models/m1/w.bin"), 5000);
    auto registry = std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home.path()});
    registry->registerRule(rule("custom.a", {QStringLiteral("~/models/*")}, RiskTier::safeToDelete));
    registry->registerRule(rule("custom.b", {QStringLiteral("~/models/**/m1")}, RiskTier::reviewRequired));

    const auto governor = ThermalGovernor::unrestricted(4);
    DeepScanEngine engine({.homeURL = home.path(), .ruleRegistry = registry, .thermalGovernor = governor});
    const ScanResult result = engine.scan(CategorySet{StorageCategory::dynamicRule});
    ASSERT_EQ(result.items.size(), 1u);
    EXPECT_EQ(result.items[0].riskTier, RiskTier::reviewRequired);
    EXPECT_EQ(result.items[0].ruleId, QStringLiteral("custom.b"));
    EXPECT_TRUE(result.warnings.isEmpty());

    DeepScanEngine withoutRules({.homeURL = home.path(), .thermalGovernor = governor});
    const ScanResult none = withoutRules.scan(CategorySet{StorageCategory::dynamicRule});
    EXPECT_TRUE(none.items.empty());
    EXPECT_TRUE(none.warnings.isEmpty());
}
