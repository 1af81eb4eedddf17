#include "scan/targets/AIModelScanner.h"

#include "platform/PathText.h"

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

void AIModelScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const QString huggingFace = QStringLiteral("ai.huggingface.hub");
    context.forEntriesOrWhole(
        scan,
        modelLocation(context.home(QStringLiteral(".cache/huggingface/hub")),
                      QStringLiteral("HuggingFace Model Hub Cache"), huggingFace),
        [&](const DirectoryEntry& entry, const QString& path) {
            if (entry.isDirectory)
                scan.emitIfContent(modelLocation(
                    path, QStringLiteral("HuggingFace Model: ") + huggingFaceModelName(entry.name), huggingFace));
        });
    scan.emitIfContent(modelLocation(context.home(QStringLiteral(".cache/huggingface/assets")),
                                     QStringLiteral("HuggingFace Assets & Preprocessed Datasets"), huggingFace));

    // Each checkpoint is one file and is reported whatever its size.
    const QString whisper = QStringLiteral("ai.whisper.models");
    context.forEntriesOrWhole(
        scan,
        modelLocation(context.home(QStringLiteral(".cache/whisper")),
                      QStringLiteral("OpenAI Whisper Speech Models Cache"), whisper),
        [&](const DirectoryEntry& entry, const QString& path) {
            if (PathText::pathExtension(entry.name).toLower() == QLatin1String("pt"))
                scan.emit(modelLocation(path, QStringLiteral("OpenAI Whisper Model: ") + entry.name, whisper),
                          scan.measure(path));
        },
        false);

    // Blobs and manifests only work as a whole, so the store is one item.
    scan.emitIfContent(modelLocation(context.home(QStringLiteral(".ollama/models")),
                                     QStringLiteral("Ollama Local Model Layers & Manifests (GGUF)"),
                                     QStringLiteral("ai.ollama.models")));

    // LM Studio keeps models by publisher: one item per model, or per publisher when its
    // folder can't be told apart.
    const QString lmStudio = QStringLiteral("ai.lmstudio.models");
    for (const char* relative : {".cache/lm-studio/models", ".lmstudio/models"}) {
        context.forEntriesOrWhole(
            scan,
            modelLocation(context.home(QLatin1String(relative)), QStringLiteral("LM Studio Local Models Cache"),
                          lmStudio),
            [&](const DirectoryEntry& publisher, const QString& publisherPath) {
                if (!publisher.isDirectory)
                    return;
                const QString label = QStringLiteral("LM Studio Model: ") + publisher.name;
                context.forEntriesOrWhole(
                    scan, modelLocation(publisherPath, label, lmStudio),
                    [&](const DirectoryEntry& model, const QString& modelPath) {
                        scan.emitIfContent(modelLocation(modelPath, label + QLatin1Char('/') + model.name, lmStudio));
                    });
            });
    }

    for (const char* relative : {".cache/vllm", ".vllm"})
        scan.emitIfContent(modelLocation(context.home(QLatin1String(relative)),
                                         QStringLiteral("vLLM Model Weights & Kernel Cache"),
                                         QStringLiteral("ai.vllm.weights")));

    if (!context.isLinux())
        return;
    const QString torch = QStringLiteral("linux.ai.torch_hub");
    scan.emitIfContent(
        modelLocation(context.home(QStringLiteral(".cache/torch/hub")), QStringLiteral("PyTorch Hub Models"), torch));
    scan.emitIfContent(modelLocation(context.home(QStringLiteral(".cache/torch/sentence_transformers")),
                                     QStringLiteral("Sentence Transformers Models"), torch));
    scan.emitIfContent(modelLocation(context.home(QStringLiteral(".local/share/nomic.ai/GPT4All")),
                                     QStringLiteral("GPT4All Local Models"), QStringLiteral("linux.ai.gpt4all")));
}

} // namespace kestrow
