#include "SyntheticHome.h"
#include "SyntheticLinuxHome.h"

#include "platform/NativePath.h"
#include "policy/PathChecker.h"
#include "rules/RuleRegistry.h"
#include "scan/DeepScanEngine.h"
#include "scan/ScanTargetFilter.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::SyntheticLinuxHome;

namespace {

// What a scan finds in the synthetic Linux home, with Docker Desktop neither installed nor
// running.
std::vector<std::string> expectedItems()
{
    const auto line = [](const char* path, const char* category, const char* tier, const char* description,
                         const char* ruleId, std::int64_t bytes, const char* flags = "") {
        return std::string(path) + " | " + category + " | " + tier + " | " + description + " | " + ruleId +
               " | 1 files, " + std::to_string(bytes) + " B | " + flags;
    };
    const auto cache = [&](const char* path, const char* description, std::int64_t bytes) {
        return line(path, "SYSTEM_CACHES", "SAFE_TO_DELETE", description, "sys.user.caches", bytes);
    };
    const auto browser = [&](const char* path, const char* description, const char* ruleId, std::int64_t bytes) {
        return line(path, "BROWSER_CACHES", "SAFE_TO_DELETE", description, ruleId, bytes);
    };
    const auto tool = [&](const char* path, const char* description, std::int64_t bytes, const char* ruleId = "-") {
        return line(path, "DEVELOPER_CACHE", "SAFE_TO_DELETE", description, ruleId, bytes);
    };
    const auto kept = [&](const char* path, const char* category, const char* description, const char* ruleId,
                          std::int64_t bytes) {
        return line(path, category, "REVIEW_REQUIRED", description, ruleId, bytes);
    };
    const char* dev = "DEVELOPER_CACHE";
    const char* ai = "AI_MODEL_WEIGHTS";
    const char* docker = "DOCKER_VM";
    std::vector<std::string> items{
        cache(".cache/thumbnails", "thumbnails Cache", 20000),
        cache(".cache/fontconfig", "fontconfig Cache", 15000),
        cache(".cache/mesa_shader_cache", "mesa_shader_cache Cache", 12000),
        cache(".var/app/org.gimp.GIMP/cache", "org.gimp.GIMP Cache (Flatpak)", 30000),
        cache(".var/app/org.mozilla.firefox/cache/fontconfig", "org.mozilla.firefox Cache (Flatpak, fontconfig)", 1000),
        cache("snap/spotify/common/.cache", "spotify Cache (Snap)", 25000),
        cache("snap/code/150/.cache", "code Cache (Snap revision 150)", 3000),
        browser(".cache/mozilla/firefox/k1.default-release", "Mozilla Firefox Profile Cache (k1.default-release)",
                "sys.browser.firefox", 27000),
        browser(".var/app/org.mozilla.firefox/cache/mozilla/firefox/f2.default",
                "Mozilla Firefox Profile Cache (f2.default, Flatpak)", "sys.browser.firefox", 40000),
        browser("snap/firefox/common/.cache/mozilla/firefox/s3.default",
                "Mozilla Firefox Profile Cache (s3.default, Snap)", "sys.browser.firefox", 35000),
        browser(".cache/google-chrome", "Google Chrome Cache", "sys.browser.chrome", 33000),
        browser(".cache/chromium", "Chromium Cache", "sys.browser.other", 16000),
        browser(".cache/BraveSoftware", "Brave Browser Cache", "sys.browser.brave", 13000),
        browser(".cache/microsoft-edge", "Microsoft Edge Cache", "sys.browser.edge", 21000),
        browser(".cache/vivaldi", "Vivaldi Browser Cache", "sys.browser.other", 9000),
        browser(".cache/opera", "Opera Browser Cache", "sys.browser.other", 11000),
        tool(".cache/pip", "pip HTTP Response and Wheel Cache", 18000, "dev.pip.cache"),
        tool(".cache/go-build", "Go Build Cache", 22000, "dev.go.cache"),
        tool(".cache/yarn", "Yarn Package Cache", 7000),
        tool(".local/share/pnpm/store", "pnpm Virtual Store (~/.local/share/pnpm/store)", 14000, "dev.pnpm.store"),
        tool(".cache/pnpm", "pnpm Metadata Cache", 3000, "dev.pnpm.store"),
        tool(".cache/bazel", "Bazel Output & Repository Cache", 19000),
        tool(".cache/ccache", "ccache Compiler Cache", 6000),
        tool(".ccache/2", "ccache Compiler Cache (~/.ccache/2)", 2000),
        tool(".cache/sccache", "sccache Compiler Cache", 5000),
        tool(".cache/node-gyp", "node-gyp Node.js Headers Cache", 4000),
        tool(".cache/typescript", "TypeScript Type Definitions Cache", 3500),
        tool(".cache/electron", "Electron Download Cache", 24000),
        tool(".cache/electron-builder", "electron-builder Download Cache", 8000),
        tool(".cache/pre-commit", "pre-commit Hook Environments Cache", 4500),
        tool(".cache/ms-playwright", "Playwright Browser Binaries Cache", 45000),
        tool(".cache/Cypress", "Cypress Binary Cache", 28000),
        tool(".cache/deno", "Deno Module & Compilation Cache", 5500),
        tool(".cache/composer", "Composer Package Cache", 6500),
        tool(".cache/JetBrains/IntelliJIdea2024.1", "JetBrains Cache (IntelliJIdea2024.1)", 26000),
        tool(".cache/JetBrains/PyCharm2024.1", "JetBrains Cache (PyCharm2024.1)", 17000),
        tool(".config/Code/Cache", "Visual Studio Code Cache (Cache)", 7000),
        tool(".config/Code/CachedData", "Visual Studio Code Cache (CachedData)", 9000),
        tool(".config/Code/CachedExtensionVSIXs", "Visual Studio Code Cache (CachedExtensionVSIXs)", 11000),
        tool(".config/Code/Code Cache", "Visual Studio Code Cache (Code Cache)", 5000),
        tool(".config/Code/GPUCache", "Visual Studio Code Cache (GPUCache)", 2000),
        tool(".config/Code - OSS/Cache", "Code - OSS Cache (Cache)", 1200),
        tool(".config/VSCodium/GPUCache", "VSCodium Cache (GPUCache)", 1500),
        tool(".config/Cursor/CachedData", "Cursor Cache (CachedData)", 2500),
        kept(".m2/repository", dev, "Maven Local Repository", "linux.maven.repository", 60000),
        kept("miniconda3/pkgs", dev, "conda Package Cache (~/miniconda3/pkgs)", "linux.conda.packages", 50000),
        kept(".conda/pkgs", dev, "conda Package Cache (~/.conda/pkgs)", "linux.conda.packages", 100),
        kept(".rustup/toolchains/stable-x86_64-unknown-linux-gnu", dev,
             "rustup Toolchain (stable-x86_64-unknown-linux-gnu)", "linux.rustup.toolchains", 80000),
        kept(".rustup/toolchains/nightly-x86_64-unknown-linux-gnu", dev,
             "rustup Toolchain (nightly-x86_64-unknown-linux-gnu)", "linux.rustup.toolchains", 40000),
        kept(".cache/torch/hub", ai, "PyTorch Hub Models", "linux.ai.torch_hub", 100000),
        kept(".cache/torch/sentence_transformers", ai, "Sentence Transformers Models", "linux.ai.torch_hub", 90000),
        kept(".local/share/nomic.ai/GPT4All", ai, "GPT4All Local Models", "linux.ai.gpt4all", 120000),
        kept(".cache/huggingface/hub/models--bert-base-uncased", ai, "HuggingFace Model: bert-base-uncased",
             "ai.huggingface.hub", 70000),
        kept(".ollama/models", ai, "Ollama Local Model Layers & Manifests (GGUF)", "ai.ollama.models", 50000),
        line(".docker/desktop/vms/0/data/Docker.raw", docker, "REVIEW_REQUIRED",
             "Docker VM Disk Image [Orphaned (Docker Desktop uninstalled & inactive)]", "linux.docker.desktop_vm",
             64000, "orphaned"),
        kept(".local/share/docker", docker, "Rootless Docker Data Root", "linux.docker.rootless", 33000),
        kept(".local/share/containers/storage", docker, "Podman Container Storage", "linux.podman.storage", 44000),
        kept(".local/share/containers/podman/machine", docker, "Podman Machine Images", "linux.podman.machine", 52000),
        line(".local/share/xorg/Xorg.0.log.old", "SYSTEM_LOGS", "SAFE_TO_DELETE", "Xorg.0.log.old Log Data",
             "sys.user.logs", 2500),
    };
    std::sort(items.begin(), items.end());
    return items;
}

struct LinuxScan {
    std::shared_ptr<RuleRegistry> registry;
    ScanResult result;
};

LinuxScan scanLinuxHome(const SyntheticLinuxHome& home, std::function<bool(const QString&)> isProcessRunning = {})
{
    auto registry = std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home.path()});
    DeepScanEngine engine(
        {.homeURL = home.path(),
         .applicationsURLs = QStringList{home.applicationsFolder()},
         .ruleRegistry = registry,
         .isProcessRunning = isProcessRunning ? std::move(isProcessRunning) : [](const QString&) { return false; }});
    return {registry, engine.scan()};
}

} // namespace

TEST(SyntheticLinuxHomeScan, FindsEveryCacheOnceAndNoDecoyAndCheckAgreesWithEachTier)
{
    const SyntheticLinuxHome home;
    const LinuxScan scan = scanLinuxHome(home);
    EXPECT_EQ(test::itemLines(scan.result.items, home.path()), expectedItems());
    EXPECT_TRUE(scan.result.warnings.isEmpty()) << scan.result.warnings.join(u'\n').toStdString();

    std::int64_t found = 0;
    for (const DiscoveredItem& item : scan.result.items) {
        found += item.logicalSizeBytes;
        for (const QString& decoy : home.decoys())
            EXPECT_FALSE(home.path(decoy).startsWith(item.path + u'/')) << decoy.toStdString();
    }
    EXPECT_EQ(found, home.cacheBytes()) << "every cache byte, each counted once";

    // `kestrow check` of an item's path, with its default category, tiers it as the scan did,
    // and lets it go.
    const PathChecker checker(home.path(), scan.registry);
    for (const DiscoveredItem& item : scan.result.items) {
        const PathCheckOutcome outcome = checker.check(item.path, StorageCategory::developerCache);
        EXPECT_FALSE(outcome.error.has_value()) << item.path.toStdString();
        EXPECT_EQ(outcome.classification.riskTier, item.riskTier) << item.path.toStdString();
    }
}

TEST(SyntheticLinuxHomeScan, DockerDesktopIsActiveWhenInstalledOrRunningAndLockedWhileRunning)
{
    const SyntheticLinuxHome home;
    const auto disk = [](const ScanResult& result) {
        return *std::find_if(result.items.begin(), result.items.end(), [](const DiscoveredItem& item) {
            return item.path.endsWith(QStringLiteral("/Docker.raw"));
        });
    };
    const DiscoveredItem running = disk(
        scanLinuxHome(home, [](const QString& name) { return name == QStringLiteral("com.docker.backend"); }).result);
    EXPECT_EQ(running.itemDescription,
              QStringLiteral("Docker VM Disk Image [Active (Docker Desktop installed or running)]"));
    EXPECT_FALSE(running.isOrphaned);
    EXPECT_TRUE(running.isLocked);

    home.makeDirectory(QStringLiteral("opt/docker-desktop"));
    const DiscoveredItem installed = disk(scanLinuxHome(home).result);
    EXPECT_FALSE(installed.isOrphaned);
    EXPECT_FALSE(installed.isLocked);
    EXPECT_EQ(installed.riskTier, RiskTier::reviewRequired) << "the Linux rule tiers the disk as the macOS rule does";
}

TEST(SyntheticLinuxHomeScan, SwitchedOffTargetsTakeTheirLinuxLocationsAlong)
{
    const SyntheticLinuxHome home;
    const ScanResult all = scanLinuxHome(home).result;
    const ScanTargetFilter filter({ScanTarget::browserCaches, ScanTarget::dockerVM, ScanTarget::aiModels,
                                   ScanTarget::npmBun, ScanTarget::cargo, ScanTarget::uvPython},
                                  {}, home.path());
    QStringList kept;
    for (const DiscoveredItem& item : filter.apply(all).items)
        kept.append(item.path.mid(home.path().size() + 1));
    for (const char* gone :
         {".cache/google-chrome", "snap/firefox/common/.cache/mozilla/firefox/s3.default", ".local/share/docker",
          ".docker/desktop/vms/0/data/Docker.raw", ".cache/torch/hub", ".cache/yarn", ".cache/pnpm",
          ".rustup/toolchains/stable-x86_64-unknown-linux-gnu", "miniconda3/pkgs", ".cache/pip"})
        EXPECT_FALSE(kept.contains(QLatin1String(gone))) << gone;
    for (const char* stays : {".cache/thumbnails", ".cache/go-build", ".m2/repository", ".config/Code/GPUCache"})
        EXPECT_TRUE(kept.contains(QLatin1String(stays))) << stays;
}

TEST(SyntheticLinuxHomeScan, TheUsersCacheFolderIsWhereTheEnvironmentPutsIt)
{
    const SyntheticLinuxHome home;
    home.writeFile(QStringLiteral("xdg-cache/fontconfig/moved.cache-7"), 4321);
    home.writeFile(QStringLiteral("xdg-cache/go-build/00/moved-d"), 1234);
    const QByteArray saved = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", NativePath::encode(home.path(QStringLiteral("xdg-cache"))));
    const std::vector<std::string> lines = test::itemLines(scanLinuxHome(home).result.items, home.path());
    qputenv("XDG_CACHE_HOME", saved);

    const auto has = [&](const std::string& start) {
        return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return l.starts_with(start); });
    };
    EXPECT_TRUE(has("xdg-cache/fontconfig | SYSTEM_CACHES | SAFE_TO_DELETE | fontconfig Cache |"));
    EXPECT_TRUE(has("xdg-cache/go-build | DEVELOPER_CACHE | SAFE_TO_DELETE | Go Build Cache |"));
    EXPECT_FALSE(has(".cache/fontconfig |"));
}
