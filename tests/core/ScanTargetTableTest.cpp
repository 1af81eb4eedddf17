#include "scan/ScanTargetTable.h"

#include <gtest/gtest.h>

using namespace kestrow;

TEST(ScanTargetTable, DerivesTheStagesTheSkippedRulesAndTheSwitchesFromItsRows)
{
    using Stage = ScanTargetTable::Stage;
    EXPECT_EQ(ScanTargetTable::categories(Stage::developer),
              (CategorySet{StorageCategory::developerCache, StorageCategory::aiModelWeights, StorageCategory::dockerVM,
                           StorageCategory::xcodeArtifacts, StorageCategory::strayDependencies}));
    EXPECT_EQ(ScanTargetTable::categories(Stage::system),
              (CategorySet{StorageCategory::systemCaches, StorageCategory::systemLogs, StorageCategory::crashReports,
                           StorageCategory::mailDownloads, StorageCategory::browserCaches}));

    // Each built-in rule whose locations a family covers, once; the order carries no meaning.
    QStringList ids = ScanTargetTable::ruleIdsScannedByTargets();
    const qsizetype listed = ids.size();
    ids.removeDuplicates();
    EXPECT_EQ(ids.size(), listed);
    QStringList expected =
        QStringLiteral(
            "dev.uv.cache dev.npm.cache dev.bun.cache dev.pip.cache dev.cargo.cache dev.homebrew.cache "
            "dev.homebrew.incomplete dev.pnpm.store dev.gradle.cache dev.git.orphaned_worktrees ai.huggingface.hub "
            "ai.whisper.models ai.ollama.models ai.lmstudio.models ai.vllm.weights dev.docker.orphaned_vm "
            "dev.xcode.derived_data dev.xcode.simulator_caches dev.stray.node_modules sys.user.caches sys.user.logs "
            "sys.crash.user_reports sys.mail.downloads sys.browser.safari sys.browser.chrome sys.browser.firefox "
            "sys.browser.edge sys.browser.arc sys.browser.brave sys.browser.other linux.conda.packages "
            "linux.rustup.toolchains linux.maven.repository linux.ai.torch_hub linux.ai.gpt4all "
            "linux.docker.desktop_vm "
            "linux.docker.rootless linux.podman.storage linux.podman.machine")
            .split(QLatin1Char(' '));
    ids.sort();
    expected.sort();
    EXPECT_EQ(ids, expected);

    // A target owns a category only when no other family finds things of it.
    EXPECT_TRUE(ScanTargetTable::ownedCategories(ScanTarget::uvPython).empty());
    EXPECT_TRUE(ScanTargetTable::ownedCategories(ScanTarget::homebrew).empty());
    EXPECT_EQ(ScanTargetTable::ownedCategories(ScanTarget::systemCaches),
              (std::vector<StorageCategory>{StorageCategory::systemCaches, StorageCategory::systemLogs,
                                            StorageCategory::crashReports}));
    EXPECT_EQ(ScanTargetTable::ownedCategories(ScanTarget::dockerVM),
              std::vector<StorageCategory>{StorageCategory::dockerVM});
    EXPECT_EQ(ScanTargetTable::homeRelativePaths(ScanTarget::uvPython),
              QStringLiteral(".cache/uv Library/Caches/uv .cache/pip Library/Caches/pip miniconda3/pkgs anaconda3/pkgs "
                             "miniforge3/pkgs .conda/pkgs")
                  .split(u' '));

    // The user-caches scan leaves alone every folder of the cache home that a family reports.
    const QStringList& claimed = ScanTargetTable::claimedCacheNames();
    for (const char* name : {"uv", "pip", "yarn", "go-build", "JetBrains", "torch", "huggingface", "mozilla",
                             "google-chrome", "ms-playwright"})
        EXPECT_TRUE(claimed.contains(QLatin1String(name))) << name;
    EXPECT_FALSE(claimed.contains(QStringLiteral("thumbnails")));
    EXPECT_EQ(claimed.size(), QSet<QString>(claimed.begin(), claimed.end()).size());
    EXPECT_EQ(ScanTargetTable::ruleIdPrefixes(ScanTarget::npmBun),
              (QStringList{QStringLiteral("dev.npm."), QStringLiteral("dev.bun."), QStringLiteral("dev.pnpm.")}));
}
