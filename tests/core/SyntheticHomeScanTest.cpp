#include "SyntheticHome.h"

#include "scan/DeepScanEngine.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::SyntheticHome;

namespace {

std::vector<std::string> sorted(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

// What every scanner finds in the synthetic home with Docker installed and not running, less
// the four places that privacy protection hides.
std::vector<std::string> visibleEverywhere()
{
    return {
        ".cache/uv/wheels-v1 | DEVELOPER_CACHE | SAFE_TO_DELETE | uv Cache (wheels-v1) | dev.uv.cache | 1 files, 30000 "
        "B | ",
        ".cache/uv/archive-v0 | DEVELOPER_CACHE | SAFE_TO_DELETE | uv Cache (archive-v0) | dev.uv.cache | 1 files, "
        "12000 B | ",
        "Library/Caches/uv | DEVELOPER_CACHE | SAFE_TO_DELETE | uv Package and Wheel Archives | dev.uv.cache | 1 "
        "files, 0 B | ",
        ".cache/huggingface/hub/models--meta-llama--Llama-3-8B | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | HuggingFace "
        "Model: meta-llama/Llama-3-8B | ai.huggingface.hub | 2 files, 400040 B | ",
        ".cache/huggingface/hub/datasets--squad--plain_text | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | HuggingFace Model: "
        "datasets/squad/plain_text | ai.huggingface.hub | 1 files, 80000 B | ",
        ".cache/huggingface/assets | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | HuggingFace Assets & Preprocessed Datasets | "
        "ai.huggingface.hub | 1 files, 25000 B | ",
        ".cache/whisper/.tiny.pt | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | OpenAI Whisper Model: .tiny.pt | "
        "ai.whisper.models | 1 files, 7500 B | ",
        ".cache/whisper/base.pt | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | OpenAI Whisper Model: base.pt | "
        "ai.whisper.models | 1 files, 145000 B | ",
        ".cache/whisper/large-v3.PT | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | OpenAI Whisper Model: large-v3.PT | "
        "ai.whisper.models | 1 files, 300000 B | ",
        ".ollama/models | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | Ollama Local Model Layers & Manifests (GGUF) | "
        "ai.ollama.models | 2 files, 500485 B | ",
        ".cache/lm-studio/models/lmstudio-community/Meta-Llama-3-8B-Instruct-GGUF | AI_MODEL_WEIGHTS | REVIEW_REQUIRED "
        "| LM Studio Model: lmstudio-community/Meta-Llama-3-8B-Instruct-GGUF | ai.lmstudio.models | 1 files, 250000 B "
        "| ",
        ".cache/lm-studio/models/lmstudio-community/Phi-3-mini-4k-instruct-GGUF | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | "
        "LM Studio Model: lmstudio-community/Phi-3-mini-4k-instruct-GGUF | ai.lmstudio.models | 1 files, 120000 B | ",
        ".cache/lm-studio/models/TheBloke | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | LM Studio Model: TheBloke | "
        "ai.lmstudio.models | 1 files, 0 B | ",
        ".lmstudio/models | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | LM Studio Local Models Cache | ai.lmstudio.models | 1 "
        "files, 0 B | ",
        ".cache/vllm | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | vLLM Model Weights & Kernel Cache | ai.vllm.weights | 1 "
        "files, 6000 B | ",
        ".vllm | AI_MODEL_WEIGHTS | REVIEW_REQUIRED | vLLM Model Weights & Kernel Cache | ai.vllm.weights | 1 files, "
        "700 B | ",
        "Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw | DOCKER_VM | KEEP | Docker VM Disk Image "
        "[Active (Docker.app installed or running)] | dev.docker.orphaned_vm | 1 files, 67108864 B | ",
        "Library/Containers/com.docker.docker/Data/vms/1/data/Docker.qcow2 | DOCKER_VM | KEEP | Docker VM Disk Image "
        "[Active (Docker.app installed or running)] | dev.docker.orphaned_vm | 1 files, 50000 B | ",
        "Library/Developer/Xcode/DerivedData/Kestrow-bqzfmkhwxzbtpf | XCODE_ARTIFACTS | SAFE_TO_DELETE | Xcode "
        "DerivedData: Kestrow-bqzfmkhwxzbtpf | dev.xcode.derived_data | 2 files, 90300 B | ",
        "Library/Developer/Xcode/DerivedData/ModuleCache.noindex | XCODE_ARTIFACTS | SAFE_TO_DELETE | Xcode "
        "DerivedData: ModuleCache.noindex | dev.xcode.derived_data | 1 files, 70000 B | ",
        "Library/Developer/Xcode/Archives | XCODE_ARTIFACTS | REVIEW_REQUIRED | Xcode Release Archives (.xcarchive) | "
        "dev.xcode.archives | 2 files, 40900 B | ",
        "Library/Developer/CoreSimulator/Caches | XCODE_ARTIFACTS | SAFE_TO_DELETE | Xcode Simulator Runtime Caches | "
        "dev.xcode.simulator_caches | 1 files, 60000 B | ",
        "node_modules | STRAY_DEPENDENCIES | REVIEW_REQUIRED | Stray node_modules in User Home Root Directory | "
        "dev.stray.node_modules | 2 files, 700 B | orphaned",
        "Library/Caches/com.spotify.client | SYSTEM_CACHES | SAFE_TO_DELETE | com.spotify.client Cache | "
        "sys.user.caches | 1 files, 45000 B | ",
        "Library/Caches/org.swift.swiftpm | SYSTEM_CACHES | SAFE_TO_DELETE | org.swift.swiftpm Cache | sys.user.caches "
        "| 1 files, 4000 B | ",
        "Library/Logs/JetBrains | SYSTEM_LOGS | SAFE_TO_DELETE | JetBrains Log Data | sys.user.logs | 1 files, 15000 B "
        "| ",
        "Library/Logs/fsck_apfs.log | SYSTEM_LOGS | SAFE_TO_DELETE | fsck_apfs.log Log Data | sys.user.logs | 1 files, "
        "2200 B | ",
        "Library/Logs/CrashReporter | CRASH_REPORTS | SAFE_TO_DELETE | Legacy User Crash Reports | "
        "sys.crash.user_reports | 1 files, 1800 B | ",
        "Library/Mail Downloads | MAIL_DOWNLOADS | REVIEW_REQUIRED | Legacy Mail Downloads | sys.mail.downloads | 1 "
        "files, 52000 B | ",
        "Library/Containers/com.apple.Safari/Data/Library/Caches | BROWSER_CACHES | SAFE_TO_DELETE | Safari WebKit "
        "Container Cache | sys.browser.safari | 1 files, 19000 B | ",
        "Library/Caches/Google/Chrome | BROWSER_CACHES | SAFE_TO_DELETE | Google Chrome Cache | sys.browser.chrome | 1 "
        "files, 33000 B | ",
        "Library/Caches/Microsoft Edge | BROWSER_CACHES | SAFE_TO_DELETE | Microsoft Edge Cache | sys.browser.edge | 1 "
        "files, 21000 B | ",
        "Library/Caches/company.thebrowser.Browser | BROWSER_CACHES | SAFE_TO_DELETE | Arc Browser Cache | "
        "sys.browser.arc | 1 files, 17000 B | ",
        "Library/Caches/BraveSoftware/Brave-Browser | BROWSER_CACHES | SAFE_TO_DELETE | Brave Browser Cache | "
        "sys.browser.brave | 1 files, 13000 B | ",
        "Library/Caches/com.operasoftware.Opera | BROWSER_CACHES | SAFE_TO_DELETE | Opera Browser Cache | "
        "sys.browser.other | 1 files, 11000 B | ",
        "Library/Caches/Firefox/Profiles | BROWSER_CACHES | SAFE_TO_DELETE | Mozilla Firefox Profile Caches | "
        "sys.browser.firefox | 1 files, 27000 B | ",
    };
}

ScanResult scanAll(const SyntheticHome& home, std::vector<ScanProgress>* reports = nullptr)
{
    DeepScanEngine engine({.homeURL = home.path(),
                           .applicationsURLs = QStringList{home.applicationsFolder()},
                           .fileManager = home.fileManager(),
                           .isProcessRunning = [](const QString&) { return false; }});
    return engine.scan(std::nullopt, [&](const ScanProgress& report) {
        if (reports)
            reports->push_back(report);
    });
}

} // namespace

TEST(SyntheticHomeScan, EveryLocationWithPlaceholdersAndWarningsForRefusedFolders)
{
    const SyntheticHome home;
    std::vector<ScanProgress> reports;
    const ScanResult result = scanAll(home, &reports);

    std::vector<std::string> expected = visibleEverywhere();
    expected.insert(
        expected.end(),
        {
            "Library/Caches/com.apple.HomeKit | SYSTEM_CACHES | SAFE_TO_DELETE | com.apple.HomeKit (Requires Full Disk "
            "Access) | sys.user.caches | 0 files, 0 B | fda",
            "Library/Logs/DiagnosticReports | CRASH_REPORTS | SAFE_TO_DELETE | User Diagnostic & Crash Reports (.ips) "
            "(Requires Full Disk Access) | sys.crash.user_reports | 0 files, 0 B | fda",
            "Library/Containers/com.apple.mail/Data/Library/Mail Downloads | MAIL_DOWNLOADS | REVIEW_REQUIRED | Apple "
            "Mail Attachment Downloads (Requires Full Disk Access) | sys.mail.downloads | 0 files, 0 B | fda",
            "Library/Caches/com.apple.Safari | BROWSER_CACHES | SAFE_TO_DELETE | Safari WebKit User Cache (Requires "
            "Full Disk Access) | sys.browser.safari | 0 files, 0 B | fda",
            // No permission test for other browsers: the refused walk alone marks the item.
            "Library/Caches/Vivaldi | BROWSER_CACHES | SAFE_TO_DELETE | Vivaldi Browser Cache | sys.browser.other | 1 "
            "files, 0 B | fda",
        });
    EXPECT_EQ(home.lines(result.items), sorted(expected));

    const QString grant =
        QStringLiteral(". Grant Full Disk Access in System Settings > Privacy & Security > Full Disk Access.");
    const QString scan = QStringLiteral("Full Disk Access is required to scan ");
    EXPECT_EQ(
        result.warnings,
        QStringList({scan + QStringLiteral("com.apple.HomeKit at ") +
                         home.path(QStringLiteral("Library/Caches/com.apple.HomeKit")) + grant,
                     scan + QStringLiteral("User Diagnostic & Crash Reports (.ips) at ") +
                         home.path(QStringLiteral("Library/Logs/DiagnosticReports")) + grant,
                     scan + QStringLiteral("Apple Mail Downloads at ") +
                         home.path(QStringLiteral("Library/Containers/com.apple.mail/Data/Library/Mail Downloads")) +
                         grant,
                     scan + QStringLiteral("Safari WebKit User Cache at ") +
                         home.path(QStringLiteral("Library/Caches/com.apple.Safari")) + grant}));

    // One report per item, placeholders too, each with the item's own sizes.
    ASSERT_EQ(reports.size(), result.items.size());
    for (const DiscoveredItem& item : result.items) {
        const auto report = std::find_if(reports.begin(), reports.end(),
                                         [&](const ScanProgress& r) { return r.currentPath == item.path; });
        ASSERT_NE(report, reports.end()) << item.path.toStdString();
        EXPECT_EQ(report->currentCategory, item.category);
        EXPECT_EQ(report->totalAllocatedBytesScanned, item.allocatedSizeBytes);
        EXPECT_EQ(report->totalLogicalBytesScanned, item.logicalSizeBytes);
        if (item.itemDescription.endsWith(QStringLiteral("(Requires Full Disk Access)"))) {
            EXPECT_FALSE(item.lastModifiedDate || item.lastAccessedDate || item.allocatedSizeBytes);
        }
    }
    EXPECT_TRUE(result.summary.requiresFullDiskAccess);
}

TEST(SyntheticHomeScan, WithFullDiskAccessEveryFolderIsMeasuredAndNothingWarns)
{
    const SyntheticHome home(SyntheticHome::Access::fullDiskAccess);
    const ScanResult result = scanAll(home);
    std::vector<std::string> expected = visibleEverywhere();
    expected.insert(expected.end(),
                    {
                        "Library/Caches/com.apple.HomeKit | SYSTEM_CACHES | SAFE_TO_DELETE | com.apple.HomeKit Cache | "
                        "sys.user.caches | 1 files, 8000 B | ",
                        "Library/Logs/DiagnosticReports | CRASH_REPORTS | SAFE_TO_DELETE | User Diagnostic & Crash "
                        "Reports (.ips) | sys.crash.user_reports | 1 files, 3000 B | ",
                        "Library/Containers/com.apple.mail/Data/Library/Mail Downloads | MAIL_DOWNLOADS | "
                        "REVIEW_REQUIRED | Apple Mail Attachment Downloads | sys.mail.downloads | 1 files, 64000 B | ",
                        "Library/Caches/com.apple.Safari | BROWSER_CACHES | SAFE_TO_DELETE | Safari WebKit User Cache "
                        "| sys.browser.safari | 1 files, 5000 B | ",
                        "Library/Caches/Vivaldi | BROWSER_CACHES | SAFE_TO_DELETE | Vivaldi Browser Cache | "
                        "sys.browser.other | 1 files, 9000 B | ",
                    });
    EXPECT_EQ(home.lines(result.items), sorted(expected));
    EXPECT_TRUE(result.warnings.isEmpty());
    EXPECT_FALSE(result.summary.requiresFullDiskAccess);
}
