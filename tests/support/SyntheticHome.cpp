#include "SyntheticHome.h"

#include "RefusingFileManager.h"

#include <QFile>

#include <algorithm>
#include <cstdint>

namespace kestrow::test {

namespace {

struct File {
    const char* path;
    std::int64_t size;
};

// Sizes are distinct where it helps to tell items apart by their bytes.
constexpr File files[] = {
    // uv: two cache folders and loose top-level files, which count for nothing.
    {".cache/uv/wheels-v1/pypi/numpy/numpy-2.0.0-cp312-macosx_14_0_arm64.whl", 30000},
    {".cache/uv/archive-v0/Xk3pL9/numpy/__init__.py", 12000},
    {".cache/uv/.lock", 0},

    // Hugging Face: a model, a dataset, a loose file and the hidden locks beside them.
    {".cache/huggingface/hub/models--meta-llama--Llama-3-8B/blobs/5f3a9c", 400000},
    {".cache/huggingface/hub/models--meta-llama--Llama-3-8B/refs/main", 40},
    {".cache/huggingface/hub/datasets--squad--plain_text/blobs/91c2e4", 80000},
    {".cache/huggingface/hub/version.txt", 1},
    {".cache/huggingface/hub/.locks/models--meta-llama--Llama-3-8B/5f3a9c.lock", 0},
    {".cache/huggingface/assets/squad/preprocessed.arrow", 25000},

    // Whisper checkpoints, one of them hidden; the notes are no model.
    {".cache/whisper/base.pt", 145000},
    {".cache/whisper/large-v3.PT", 300000},
    {".cache/whisper/.tiny.pt", 7500},
    {".cache/whisper/notes.txt", 100},

    // Ollama's store is one item; its key beside it is none.
    {".ollama/models/blobs/sha256-6a0746a1ec1a", 500000},
    {".ollama/models/manifests/registry.ollama.ai/library/llama3/latest", 485},
    {".ollama/id_ed25519", 387},

    // LM Studio: two models of one publisher, an empty publisher, an empty second root.
    {".cache/lm-studio/models/lmstudio-community/Meta-Llama-3-8B-Instruct-GGUF/"
     "Meta-Llama-3-8B-Instruct-Q4_K_M.gguf",
     250000},
    {".cache/lm-studio/models/lmstudio-community/Phi-3-mini-4k-instruct-GGUF/Phi-3-mini-4k-instruct-q4.gguf", 120000},

    // vLLM at both of its places.
    {".cache/vllm/torch_compile_cache/a1b2c3/rank_0/model.py", 6000},
    {".vllm/weights/config.json", 700},

    // Docker Desktop, installed, with an old disk of a second VM beside the current one.
    {"Applications/Docker.app/Contents/Info.plist", 1500},
    {"Library/Containers/com.docker.docker/Data/vms/1/data/Docker.qcow2", 50000},
    {"Library/Containers/com.docker.docker/Data/vms/0/log/console.log", 900},

    // Xcode.
    {"Library/Developer/Xcode/DerivedData/Kestrow-bqzfmkhwxzbtpf/Build/Products/Debug/kestrow", 90000},
    {"Library/Developer/Xcode/DerivedData/Kestrow-bqzfmkhwxzbtpf/info.plist", 300},
    {"Library/Developer/Xcode/DerivedData/ModuleCache.noindex/Foundation-1X2Y3Z.pcm", 70000},
    {"Library/Developer/Xcode/Archives/2024-05-01/Kestrow 01-05-2024, 10.12.xcarchive/Info.plist", 900},
    {"Library/Developer/Xcode/Archives/2024-05-01/Kestrow 01-05-2024, 10.12.xcarchive/dSYMs/Kestrow.dSYM", 40000},
    {"Library/Developer/CoreSimulator/Caches/dyld/23E224/dyld_sim_shared_cache_arm64e", 60000},

    // node_modules in the home is stray; the one of a project is the project's.
    {"node_modules/left-pad/index.js", 500},
    {"node_modules/.package-lock.json", 200},
    {"Projects/web-app/node_modules/react/index.js", 700},
    {"Projects/web-app/package.json", 300},
    {"Projects/web-app/.git/HEAD", 23},

    // User caches, among them browsers' and developer tools' folders that belong elsewhere.
    {"Library/Caches/com.spotify.client/Data/0a/0a1b2c", 45000},
    {"Library/Caches/org.swift.swiftpm/manifests/ManifestLoading/web-app.json", 4000},
    {"Library/Caches/com.apple.HomeKit/Cache.db", 8000},
    {"Library/Caches/com.google.SoftwareUpdate/update.plist", 100},
    {"Library/Caches/Yarn/v6/npm-left-pad-1.3.0/package.json", 300},
    {"Library/Caches/go-build/ab/abcdef-d", 300},
    {"Library/Caches/.DS_Store", 6148},

    // Browsers.
    {"Library/Caches/Google/Chrome/Default/Cache/Cache_Data/data_0", 33000},
    {"Library/Caches/Microsoft Edge/Default/Cache/Cache_Data/data_1", 21000},
    {"Library/Caches/company.thebrowser.Browser/Default/Cache/Cache_Data/data_2", 17000},
    {"Library/Caches/BraveSoftware/Brave-Browser/Default/Cache/Cache_Data/data_3", 13000},
    {"Library/Caches/com.operasoftware.Opera/Cache/Cache_Data/data_4", 11000},
    {"Library/Caches/Vivaldi/Default/Cache/Cache_Data/data_5", 9000},
    {"Library/Caches/Firefox/Profiles/x1y2z3.default-release/cache2/entries/ABCD1234", 27000},
    {"Library/Caches/com.apple.Safari/WebKitCache/Version 16/Records/x", 5000},
    {"Library/Containers/com.apple.Safari/Data/Library/Caches/com.apple.Safari/WebKitCache/y", 19000},

    // Logs and crash reports.
    {"Library/Logs/JetBrains/IntelliJIdea2024.1/idea.log", 15000},
    {"Library/Logs/fsck_apfs.log", 2200},
    {"Library/Logs/.DS_Store", 6148},
    {"Library/Logs/DiagnosticReports/kestrow-2024-05-01-101200.ips", 3000},
    {"Library/Logs/CrashReporter/MobileDevice/iPhone/kestrow.crash", 1800},

    // Mail.
    {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads/1F2E3D/contract.pdf", 64000},
    {"Library/Mail Downloads/invoice-2024.pdf", 52000},
};

constexpr const char* emptyFolders[] = {
    "Library/Caches/uv",
    ".cache/lm-studio/models/TheBloke",
    ".lmstudio/models",
};

constexpr const char* refused[] = {
    "Library/Caches/com.apple.HomeKit",
    "Library/Logs/DiagnosticReports",
    "Library/Containers/com.apple.mail/Data/Library",
    "Library/Caches/com.apple.Safari",
    "Library/Caches/Vivaldi",
};

} // namespace

SyntheticHome::SyntheticHome(Access access)
{
    for (const File& file : files)
        writeFile(QLatin1String(file.path), file.size);
    for (const char* folder : emptyFolders)
        makeDirectory(QLatin1String(folder));
    writeFile(QStringLiteral(".cache/uv/CACHEDIR.TAG"), QByteArray("Signature: 8a477f597d28d172789f06886806bc55\n"));
    // The current VM's disk is sparse, as Docker makes it: 64 MiB long, little of it held.
    QFile disk(makeDirectory(QStringLiteral("Library/Containers/com.docker.docker/Data/vms/0/data")) +
               QStringLiteral("/Docker.raw"));
    if (!disk.open(QIODevice::WriteOnly) || !disk.resize(64LL << 20))
        throw std::runtime_error("cannot create the Docker disk");

    if (access == Access::fullDiskAccess)
        return;
    for (const char* folder : refused) {
        m_refused.append(path(QLatin1String(folder)));
        if (!QFile::setPermissions(m_refused.back(), {}))
            throw std::runtime_error("cannot lock " + m_refused.back().toStdString());
    }
}

std::shared_ptr<const FileManager> SyntheticHome::fileManager() const
{
    if (permissionsAreIgnored())
        return std::make_shared<RefusingFileManager>(m_refused);
    return std::make_shared<FileManager>();
}

std::vector<std::string> itemLines(const std::vector<DiscoveredItem>& items, const QString& home)
{
    std::vector<std::string> result;
    for (const DiscoveredItem& item : items) {
        QStringList flags;
        if (item.isOrphaned)
            flags.append(QStringLiteral("orphaned"));
        if (item.isLocked)
            flags.append(QStringLiteral("locked"));
        if (item.requiresFullDiskAccess)
            flags.append(QStringLiteral("fda"));
        const QString relative =
            item.path.startsWith(home + QLatin1Char('/')) ? item.path.mid(home.size() + 1) : item.path;
        result.push_back(QStringList{relative, item.category.rawValue(), item.riskTier.rawValue(), item.itemDescription,
                                     item.ruleId.value_or(QStringLiteral("-")),
                                     QStringLiteral("%1 files, %2 B").arg(item.fileCount).arg(item.logicalSizeBytes),
                                     flags.join(QLatin1Char(' '))}
                             .join(QStringLiteral(" | "))
                             .toStdString());
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace kestrow::test
