// The AI model store, Docker disk, Xcode and stray-dependency sub-scans of DeveloperTargets.
#include "scan/DeveloperTargets.h"

#include "support/PathText.h"

#include <algorithm>

namespace kestrow {

namespace {

TargetScan::Location modelLocation(const QString& path, const QString& description, const QString& ruleId)
{
    return {
        .path = path, .category = StorageCategory::aiModelWeights, .description = description, .defaultRuleId = ruleId};
}

// "models--org--name" reads "org/name"; other hub folders only lose their separators.
QString huggingFaceModelName(const QString& folder)
{
    QString name = folder;
    name.replace(QLatin1String("models--"), QString());
    name.replace(QLatin1String("--"), QLatin1String("/"));
    return name;
}

} // namespace

void DeveloperTargets::scanAIModelWeights(TargetScan& scan) const
{
    const QString huggingFace = QStringLiteral("ai.huggingface.hub");
    forEntriesOrWhole(
        scan,
        modelLocation(home(QStringLiteral(".cache/huggingface/hub")), QStringLiteral("HuggingFace Model Hub Cache"),
                      huggingFace),
        [&](const DirectoryEntry& entry, const QString& path) {
            if (entry.isDirectory)
                scan.emitIfContent(modelLocation(
                    path, QStringLiteral("HuggingFace Model: ") + huggingFaceModelName(entry.name), huggingFace));
        });
    scan.emitIfContent(modelLocation(home(QStringLiteral(".cache/huggingface/assets")),
                                     QStringLiteral("HuggingFace Assets & Preprocessed Datasets"), huggingFace));

    // Each checkpoint is one file and is reported whatever its size.
    const QString whisper = QStringLiteral("ai.whisper.models");
    forEntriesOrWhole(
        scan,
        modelLocation(home(QStringLiteral(".cache/whisper")), QStringLiteral("OpenAI Whisper Speech Models Cache"),
                      whisper),
        [&](const DirectoryEntry& entry, const QString& path) {
            if (PathText::pathExtension(entry.name).toLower() == QLatin1String("pt"))
                scan.emit(modelLocation(path, QStringLiteral("OpenAI Whisper Model: ") + entry.name, whisper),
                          scan.measure(path));
        },
        false);

    // Blobs and manifests only work as a whole, so the store is one item.
    scan.emitIfContent(modelLocation(home(QStringLiteral(".ollama/models")),
                                     QStringLiteral("Ollama Local Model Layers & Manifests (GGUF)"),
                                     QStringLiteral("ai.ollama.models")));

    // LM Studio keeps models by publisher: one item per model, or per publisher when its
    // folder can't be told apart.
    const QString lmStudio = QStringLiteral("ai.lmstudio.models");
    for (const char* relative : {".cache/lm-studio/models", ".lmstudio/models"}) {
        forEntriesOrWhole(
            scan,
            modelLocation(home(QLatin1String(relative)), QStringLiteral("LM Studio Local Models Cache"), lmStudio),
            [&](const DirectoryEntry& publisher, const QString& publisherPath) {
                if (!publisher.isDirectory)
                    return;
                const QString label = QStringLiteral("LM Studio Model: ") + publisher.name;
                forEntriesOrWhole(scan, modelLocation(publisherPath, label, lmStudio),
                                  [&](const DirectoryEntry& model, const QString& modelPath) {
                                      scan.emitIfContent(
                                          modelLocation(modelPath, label + QLatin1Char('/') + model.name, lmStudio));
                                  });
            });
    }

    for (const char* relative : {".cache/vllm", ".vllm"})
        scan.emitIfContent(modelLocation(home(QLatin1String(relative)),
                                         QStringLiteral("vLLM Model Weights & Kernel Cache"),
                                         QStringLiteral("ai.vllm.weights")));
}

bool DeveloperTargets::isDockerAppInstalled() const
{
    return std::any_of(m_applicationsURLs.begin(), m_applicationsURLs.end(), [&](const QString& folder) {
        return m_fileManager->fileExists(PathText::appending(folder, QStringLiteral("Docker.app")));
    });
}

bool DeveloperTargets::isDockerDaemonRunning() const
{
    for (const char* name : {"Docker", "com.docker.virtualization", "com.docker.backend", "vpnkit", "docker"}) {
        if (m_isProcessRunning(QLatin1String(name)))
            return true;
    }
    return false;
}

void DeveloperTargets::scanDockerVMs(TargetScan& scan) const
{
    const QString vms = home(QStringLiteral("Library/Containers/com.docker.docker/Data/vms"));
    if (!m_fileManager->fileExists(vms))
        return;
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(vms, true);
    if (!listing.ok())
        return;
    QStringList disks;
    for (const DirectoryEntry& entry : listing.entries) {
        for (const char* relative : {"data/Docker.raw", "Docker.raw", "data/Docker.qcow2"}) {
            const QString disk = PathText::appending(PathText::appending(vms, entry.name), QLatin1String(relative));
            if (m_fileManager->fileExists(disk))
                disks.append(disk);
        }
    }
    if (disks.isEmpty())
        return;

    // A disk is left behind only when Docker is neither installed nor running; a running
    // daemon holds it open.
    const bool isRunning = isDockerDaemonRunning();
    const bool isOrphaned = !isDockerAppInstalled() && !isRunning;
    const QString description = QStringLiteral("Docker VM Disk Image [") +
                                (isOrphaned ? QStringLiteral("Orphaned (Docker.app uninstalled & inactive)")
                                            : QStringLiteral("Active (Docker.app installed or running)")) +
                                QLatin1Char(']');
    for (const QString& disk : disks) {
        MeasuredMetrics metrics = scan.measure(disk);
        metrics.fileCount = 1;
        scan.emit({.path = disk,
                   .category = StorageCategory::dockerVM,
                   .description = description,
                   .defaultRuleId = QStringLiteral("dev.docker.orphaned_vm"),
                   .isOrphaned = isOrphaned,
                   .isLocked = isRunning},
                  metrics);
    }
}

void DeveloperTargets::scanXcodeArtifacts(TargetScan& scan) const
{
    const auto xcodeLocation = [](const QString& path, const QString& description, const char* ruleId) {
        return TargetScan::Location{.path = path,
                                    .category = StorageCategory::xcodeArtifacts,
                                    .description = description,
                                    .defaultRuleId = QLatin1String(ruleId)};
    };
    const char* derivedData = "dev.xcode.derived_data";
    forEntriesOrWhole(scan,
                      xcodeLocation(home(QStringLiteral("Library/Developer/Xcode/DerivedData")),
                                    QStringLiteral("Xcode DerivedData Build Cache"), derivedData),
                      [&](const DirectoryEntry& entry, const QString& path) {
                          if (entry.isDirectory)
                              scan.emitIfContent(
                                  xcodeLocation(path, QStringLiteral("Xcode DerivedData: ") + entry.name, derivedData));
                      });
    scan.emitIfContent(xcodeLocation(home(QStringLiteral("Library/Developer/Xcode/Archives")),
                                     QStringLiteral("Xcode Release Archives (.xcarchive)"), "dev.xcode.archives"));
    scan.emitIfContent(xcodeLocation(home(QStringLiteral("Library/Developer/CoreSimulator/Caches")),
                                     QStringLiteral("Xcode Simulator Runtime Caches"), "dev.xcode.simulator_caches"));
}

void DeveloperTargets::scanStrayNodeModules(TargetScan& scan) const
{
    // Only the home's own node_modules belongs to no project; those inside projects are theirs.
    scan.emitIfContent({.path = home(QStringLiteral("node_modules")),
                        .category = StorageCategory::strayDependencies,
                        .description = QStringLiteral("Stray node_modules in User Home Root Directory"),
                        .defaultRuleId = QStringLiteral("dev.stray.node_modules"),
                        .isOrphaned = true});
}

} // namespace kestrow
