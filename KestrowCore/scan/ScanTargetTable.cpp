#include "scan/ScanTargetTable.h"

#include "scan/targets/AIModelScanner.h"
#include "scan/targets/BrowserCacheScanner.h"
#include "scan/targets/BuildToolCacheScanner.h"
#include "scan/targets/BunCacheScanner.h"
#include "scan/targets/CargoCacheScanner.h"
#include "scan/targets/CondaPackageScanner.h"
#include "scan/targets/ContainerStorageScanner.h"
#include "scan/targets/CrashReportScanner.h"
#include "scan/targets/DockerVMScanner.h"
#include "scan/targets/EditorCacheScanner.h"
#include "scan/targets/GitWorktreeScanner.h"
#include "scan/targets/GradleCacheScanner.h"
#include "scan/targets/HomebrewCacheScanner.h"
#include "scan/targets/MailDownloadScanner.h"
#include "scan/targets/MavenRepositoryScanner.h"
#include "scan/targets/NpmCacheScanner.h"
#include "scan/targets/PipCacheScanner.h"
#include "scan/targets/PnpmStoreScanner.h"
#include "scan/targets/RustupToolchainScanner.h"
#include "scan/targets/StrayNodeModulesScanner.h"
#include "scan/targets/UVCacheScanner.h"
#include "scan/targets/UserCacheScanner.h"
#include "scan/targets/UserLogScanner.h"
#include "scan/targets/XcodeArtifactScanner.h"
#include "scan/targets/YarnCacheScanner.h"

#include <algorithm>

namespace kestrow {

namespace {

using Stage = ScanTargetTable::Stage;
using Row = ScanTargetTable::Row;

QStringList strings(std::initializer_list<const char*> texts)
{
    QStringList list;
    for (const char* text : texts)
        list.append(QLatin1String(text));
    return list;
}

std::vector<Row> makeRows()
{
    return {
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<UVCacheScanner>(),
         .ruleIds = strings({"dev.uv.cache"}),
         .target = ScanTarget::uvPython,
         .homeRelativePaths = strings({".cache/uv", "Library/Caches/uv"}),
         .ruleIdPrefixes = strings({"dev.uv."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<NpmCacheScanner>(),
         .ruleIds = strings({"dev.npm.cache"}),
         .target = ScanTarget::npmBun,
         .homeRelativePaths = strings({".npm"}),
         .ruleIdPrefixes = strings({"dev.npm."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<BunCacheScanner>(),
         .ruleIds = strings({"dev.bun.cache"}),
         .target = ScanTarget::npmBun,
         .homeRelativePaths = strings({".bun"}),
         .ruleIdPrefixes = strings({"dev.bun."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<PipCacheScanner>(),
         .ruleIds = strings({"dev.pip.cache"}),
         .target = ScanTarget::uvPython,
         .homeRelativePaths = strings({".cache/pip", "Library/Caches/pip"}),
         .ruleIdPrefixes = strings({"dev.pip."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<CargoCacheScanner>(),
         .ruleIds = strings({"dev.cargo.cache"}),
         .target = ScanTarget::cargo,
         .homeRelativePaths = strings({".cargo"}),
         .ruleIdPrefixes = strings({"dev.cargo."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<PnpmStoreScanner>(),
         .ruleIds = strings({"dev.pnpm.store"}),
         .target = ScanTarget::npmBun,
         .homeRelativePaths = strings({".pnpm-store", ".local/share/pnpm", "Library/pnpm", ".cache/pnpm"}),
         .ruleIdPrefixes = strings({"dev.pnpm."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<YarnCacheScanner>(),
         .target = ScanTarget::npmBun,
         .homeRelativePaths = strings({".cache/yarn"}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<CondaPackageScanner>(),
         .ruleIds = strings({"linux.conda.packages"}),
         .target = ScanTarget::uvPython,
         .homeRelativePaths = strings({"miniconda3/pkgs", "anaconda3/pkgs", "miniforge3/pkgs", ".conda/pkgs"}),
         .ruleIdPrefixes = strings({"linux.conda."}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<RustupToolchainScanner>(),
         .ruleIds = strings({"linux.rustup.toolchains"}),
         .target = ScanTarget::cargo,
         .homeRelativePaths = strings({".rustup/toolchains"}),
         .ruleIdPrefixes = strings({"linux.rustup."}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<MavenRepositoryScanner>(),
         .ruleIds = strings({"linux.maven.repository"}),
         .homeRelativePaths = strings({".m2/repository"}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<BuildToolCacheScanner>(),
         .homeRelativePaths =
             strings({".cache/go-build", ".cache/bazel", ".cache/ccache", ".ccache", ".cache/sccache",
                      ".cache/node-gyp", ".cache/typescript", ".cache/electron", ".cache/electron-builder",
                      ".cache/pre-commit", ".cache/ms-playwright", ".cache/Cypress", ".cache/deno", ".cache/composer"}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<EditorCacheScanner>(),
         .homeRelativePaths = strings({".cache/JetBrains"}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<HomebrewCacheScanner>(),
         .ruleIds = strings({"dev.homebrew.cache", "dev.homebrew.incomplete"}),
         .target = ScanTarget::homebrew,
         .homeRelativePaths = strings({"Library/Caches/Homebrew"}),
         .ruleIdPrefixes = strings({"dev.homebrew."})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<GradleCacheScanner>(),
         .ruleIds = strings({"dev.gradle.cache"})},
        {.stage = Stage::developer,
         .category = StorageCategory::developerCache,
         .scanner = std::make_shared<GitWorktreeScanner>(),
         .ruleIds = strings({"dev.git.orphaned_worktrees"})},
        {.stage = Stage::developer,
         .category = StorageCategory::aiModelWeights,
         .scanner = std::make_shared<AIModelScanner>(),
         .ruleIds = strings({"ai.huggingface.hub", "ai.whisper.models", "ai.ollama.models", "ai.lmstudio.models",
                             "ai.vllm.weights", "linux.ai.torch_hub", "linux.ai.gpt4all"}),
         .target = ScanTarget::aiModels,
         .homeRelativePaths = strings({".cache/huggingface", ".cache/whisper", ".ollama", ".cache/lm-studio",
                                       ".lmstudio", ".cache/vllm", ".vllm", ".cache/torch", ".local/share/nomic.ai"}),
         .ruleIdPrefixes = strings({"ai.", "linux.ai."})},
        {.stage = Stage::developer,
         .category = StorageCategory::dockerVM,
         .scanner = std::make_shared<DockerVMScanner>(),
         .ruleIds = strings({"dev.docker.orphaned_vm", "linux.docker.desktop_vm"}),
         .target = ScanTarget::dockerVM,
         .homeRelativePaths = strings({"Library/Containers/com.docker.docker", ".docker/desktop/vms"}),
         .ruleIdPrefixes = strings({"dev.docker.", "linux.docker."})},
        {.stage = Stage::developer,
         .category = StorageCategory::dockerVM,
         .scanner = std::make_shared<ContainerStorageScanner>(),
         .ruleIds = strings({"linux.docker.rootless", "linux.podman.storage", "linux.podman.machine"}),
         .target = ScanTarget::dockerVM,
         .homeRelativePaths = strings({".local/share/docker", ".local/share/containers"}),
         .ruleIdPrefixes = strings({"linux.podman."}),
         .host = HostSystem::gnuLinux},
        {.stage = Stage::developer,
         .category = StorageCategory::xcodeArtifacts,
         .scanner = std::make_shared<XcodeArtifactScanner>(),
         .ruleIds = strings({"dev.xcode.derived_data", "dev.xcode.simulator_caches"}),
         .target = ScanTarget::xcode,
         .homeRelativePaths = strings({"Library/Developer/Xcode", "Library/Developer/CoreSimulator/Caches"}),
         .ruleIdPrefixes = strings({"dev.xcode."})},
        {.stage = Stage::developer,
         .category = StorageCategory::strayDependencies,
         .scanner = std::make_shared<StrayNodeModulesScanner>(),
         .ruleIds = strings({"dev.stray.node_modules"})},
        {.stage = Stage::system,
         .category = StorageCategory::systemCaches,
         .scanner = std::make_shared<UserCacheScanner>(),
         .ruleIds = strings({"sys.user.caches"}),
         .target = ScanTarget::systemCaches,
         .ruleIdPrefixes = strings({"sys.user.caches"})},
        {.stage = Stage::system,
         .category = StorageCategory::systemLogs,
         .scanner = std::make_shared<UserLogScanner>(),
         .ruleIds = strings({"sys.user.logs"}),
         .target = ScanTarget::systemCaches,
         .ruleIdPrefixes = strings({"sys.user.logs"})},
        {.stage = Stage::system,
         .category = StorageCategory::crashReports,
         .scanner = std::make_shared<CrashReportScanner>(),
         .ruleIds = strings({"sys.crash.user_reports"}),
         .target = ScanTarget::systemCaches,
         .ruleIdPrefixes = strings({"sys.crash."})},
        {.stage = Stage::system,
         .category = StorageCategory::mailDownloads,
         .scanner = std::make_shared<MailDownloadScanner>(),
         .ruleIds = strings({"sys.mail.downloads"})},
        {.stage = Stage::system,
         .category = StorageCategory::browserCaches,
         .scanner = std::make_shared<BrowserCacheScanner>(),
         .ruleIds = strings({"sys.browser.safari", "sys.browser.chrome", "sys.browser.firefox", "sys.browser.edge",
                             "sys.browser.arc", "sys.browser.brave", "sys.browser.other"}),
         .target = ScanTarget::browserCaches,
         .homeRelativePaths =
             strings({".cache/mozilla", ".cache/google-chrome", ".cache/chromium", ".cache/BraveSoftware",
                      ".cache/microsoft-edge", ".cache/vivaldi", ".cache/opera", "snap/firefox/common/.cache/mozilla",
                      ".var/app/org.mozilla.firefox/cache/mozilla"}),
         .ruleIdPrefixes = strings({"sys.browser."})},
    };
}

} // namespace

const std::vector<Row>& ScanTargetTable::rows()
{
    static const std::vector<Row> table = makeRows();
    return table;
}

CategorySet ScanTargetTable::categories(Stage stage)
{
    CategorySet set;
    for (const Row& row : rows())
        if (row.stage == stage)
            set.insert(row.category);
    return set;
}

void ScanTargetTable::scan(Stage stage, const CategorySet& categories, TargetScan& scan, const TargetContext& context)
{
    for (const Row& row : rows()) {
        if (row.stage != stage || !categories.contains(row.category) || (row.host && row.host != context.hostSystem))
            continue;
        scan.checkCancellation();
        row.scanner->scan(scan, context);
    }
}

const QStringList& ScanTargetTable::claimedCacheNames()
{
    static const QStringList names = [] {
        const QLatin1String cache(".cache/");
        QStringList all;
        for (const Row& row : rows())
            for (const QString& path : row.homeRelativePaths)
                if (path.startsWith(cache))
                    all.append(path.mid(cache.size()).section(QLatin1Char('/'), 0, 0));
        all.removeDuplicates();
        return all;
    }();
    return names;
}

const QStringList& ScanTargetTable::ruleIdsScannedByTargets()
{
    static const QStringList ids = [] {
        QStringList all;
        for (const Row& row : rows())
            all += row.ruleIds;
        return all;
    }();
    return ids;
}

std::vector<StorageCategory> ScanTargetTable::ownedCategories(ScanTarget target)
{
    std::vector<StorageCategory> owned;
    for (const Row& row : rows()) {
        if (row.target != target || std::find(owned.begin(), owned.end(), row.category) != owned.end())
            continue;
        const bool allRowsOfTarget = std::all_of(rows().begin(), rows().end(), [&](const Row& other) {
            return other.category != row.category || other.target == target;
        });
        if (allRowsOfTarget)
            owned.push_back(row.category);
    }
    return owned;
}

QStringList ScanTargetTable::homeRelativePaths(ScanTarget target)
{
    QStringList paths;
    for (const Row& row : rows())
        if (row.target == target)
            paths += row.homeRelativePaths;
    return paths;
}

QStringList ScanTargetTable::ruleIdPrefixes(ScanTarget target)
{
    QStringList prefixes;
    for (const Row& row : rows())
        if (row.target == target)
            prefixes += row.ruleIdPrefixes;
    return prefixes;
}

} // namespace kestrow
