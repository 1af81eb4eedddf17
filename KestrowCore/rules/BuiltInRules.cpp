#include "rules/BuiltInRules.h"

namespace kestrow {

namespace {

struct Row {
    const char* id;
    const char* name;
    const char* description;
    StorageCategory category;
    RiskTier riskTier;
    std::vector<const char*> patterns;
    std::vector<const char*> excludedPatterns;
};

QStringList strings(const std::vector<const char*>& texts)
{
    QStringList list;
    for (const char* text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

constexpr RiskTier safe = RiskTier::safeToDelete;
constexpr RiskTier review = RiskTier::reviewRequired;

} // namespace

std::vector<RuleDefinition> BuiltInRules::catalogue(const QDateTime& builtAt)
{
    static const Row rows[] = {
        {"dev.uv.cache",
         "uv Package & Wheel Cache",
         "Python packages, wheels, and source download caches managed by Astral uv.",
         StorageCategory::developerCache,
         safe,
         {"~/.cache/uv/**", "~/Library/Caches/uv/**"},
         {}},
        {"dev.npm.cache",
         "npm Cache",
         "Node Package Manager download caches and execution logs.",
         StorageCategory::developerCache,
         safe,
         {"~/.npm/_cacache/**", "~/.npm/_npx/**", "~/.npm/_logs/**", "~/.npm/_prebuilds/**"},
         {}},
        {"dev.bun.cache",
         "Bun Package Cache",
         "Bun runtime package download and tar cache.",
         StorageCategory::developerCache,
         safe,
         {"~/.bun/install/cache/**"},
         {}},
        {"dev.pip.cache",
         "pip Cache",
         "Python pip HTTP response cache and built wheels.",
         StorageCategory::developerCache,
         safe,
         {"~/.cache/pip/**", "~/Library/Caches/pip/**"},
         {}},
        {"dev.cargo.cache",
         "Cargo Registry & Git Cache",
         "Downloaded crate archives and git index checkouts for Rust.",
         StorageCategory::developerCache,
         safe,
         {"~/.cargo/registry/cache/**", "~/.cargo/registry/src/**", "~/.cargo/git/db/**", "~/.cargo/git/checkouts/**",
          "~/.cargo/.package-cache/**"},
         {"~/.cargo/bin/**", "~/.cargo/config.toml", "~/.cargo/credentials.toml"}},
        {"dev.go.cache",
         "Go Module & Build Cache",
         "Go module download cache and compilation artifacts.",
         StorageCategory::developerCache,
         safe,
         {"~/go/pkg/mod/cache/**", "~/Library/Caches/go-build/**"},
         {}},
        {"dev.homebrew.cache",
         "Homebrew Cache",
         "Downloaded formula bottles, cask packages, and API metadata managed by Homebrew.",
         StorageCategory::developerCache,
         safe,
         {"~/Library/Caches/Homebrew/**"},
         {"~/Library/Caches/Homebrew/downloads/*.incomplete"}},
        {"dev.homebrew.incomplete",
         "Homebrew Incomplete Downloads",
         "Interrupted or partial Homebrew bottle and cask downloads.",
         StorageCategory::developerCache,
         safe,
         {"~/Library/Caches/Homebrew/downloads/*.incomplete"},
         {}},
        {"dev.pnpm.store",
         "pnpm Virtual Store",
         "Global content-addressable package storage managed by pnpm.",
         StorageCategory::developerCache,
         safe,
         {"~/.local/share/pnpm/store/**", "~/Library/pnpm/store/**"},
         {}},
        {"dev.gradle.cache",
         "Gradle Cache & Wrapper Distributions",
         "Downloaded dependencies, transform caches, and distribution runtimes for Gradle.",
         StorageCategory::developerCache,
         safe,
         {"~/.gradle/caches/**", "~/.gradle/wrapper/dists/**", "~/.gradle/daemon/**"},
         {"~/.gradle/gradle.properties", "~/.gradle/init.d/**"}},
        {"dev.git.orphaned_worktrees",
         "Orphaned Git Worktrees",
         "Stale git worktree metadata referencing deleted checkout directories, or orphaned worktree "
         "checkouts.",
         StorageCategory::developerCache,
         safe,
         {"~/.git/worktrees/**"},
         {}},
        {"ai.huggingface.hub",
         "HuggingFace Hub Models",
         "Cached model weights and dataset snapshots downloaded from HuggingFace.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.cache/huggingface/hub/**", "~/.cache/huggingface/assets/**"},
         {}},
        {"ai.whisper.models",
         "OpenAI Whisper Models",
         "Pretrained PyTorch model checkpoints for Whisper audio transcription.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.cache/whisper/*.pt"},
         {}},
        {"ai.ollama.models",
         "Ollama Model Layers",
         "GGUF model layers and manifests managed by Ollama.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.ollama/models/**"},
         {}},
        {"ai.lmstudio.models",
         "LM Studio Models",
         "Local GGUF models downloaded and managed by LM Studio.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.cache/lm-studio/models/**", "~/.lmstudio/models/**"},
         {}},
        {"ai.vllm.weights",
         "vLLM Weights & Cache",
         "Cached model weights, compiled Triton kernels, and artifacts for vLLM.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.cache/vllm/**"},
         {}},
        {"dev.docker.orphaned_vm",
         "Docker VM Disk Image",
         "Docker Desktop Linux VM APFS disk image (Docker.raw).",
         StorageCategory::dockerVM,
         review,
         {"~/Library/Containers/com.docker.docker/Data/vms/*/data/Docker.raw",
          "~/Library/Containers/com.docker.docker/Data/vms/*/Docker.raw"},
         {}},
        {"dev.xcode.derived_data",
         "Xcode DerivedData",
         "Intermediate build files, module caches, and compilation indices.",
         StorageCategory::xcodeArtifacts,
         safe,
         {"~/Library/Developer/Xcode/DerivedData/**"},
         {}},
        {"dev.xcode.simulator_caches",
         "Xcode Simulator Runtime Caches",
         "Dyld shared caches and temporary runtime files for CoreSimulator.",
         StorageCategory::xcodeArtifacts,
         safe,
         {"~/Library/Developer/CoreSimulator/Caches/**"},
         {}},
        {"dev.stray.node_modules",
         "Stray Home node_modules",
         "Accidentally installed npm modules located directly inside user home root.",
         StorageCategory::strayDependencies,
         review,
         {"~/node_modules/**"},
         {}},
        {"sys.user.caches",
         "User Application Caches",
         "Standard macOS user caches in ~/Library/Caches.",
         StorageCategory::systemCaches,
         safe,
         {"~/Library/Caches/**"},
         {}},
        {"sys.user.logs",
         "User Application Logs",
         "Historical application logs in ~/Library/Logs.",
         StorageCategory::systemLogs,
         safe,
         {"~/Library/Logs/**"},
         {}},
        {"sys.crash.user_reports",
         "Crash & Diagnostic Reports",
         "Apple diagnostic crash dumps (.ips, .crash files).",
         StorageCategory::crashReports,
         safe,
         {"~/Library/Logs/DiagnosticReports/**", "~/Library/Logs/CrashReporter/**"},
         {}},
        {"sys.browser.chrome",
         "Google Chrome Cache",
         "Disk HTTP cache and V8 code cache for Chrome.",
         StorageCategory::browserCaches,
         safe,
         {"~/Library/Caches/Google/Chrome/*/Cache/**", "~/Library/Caches/Google/Chrome/*/Code Cache/**"},
         {}},
    };

    std::vector<RuleDefinition> rules;
    rules.reserve(std::size(rows));
    for (const Row& row : rows)
        rules.push_back(RuleDefinition{
            .id = QString::fromUtf8(row.id),
            .name = QString::fromUtf8(row.name),
            .description = QString::fromUtf8(row.description),
            .category = row.category,
            .riskTier = row.riskTier,
            .patterns = strings(row.patterns),
            .excludedPatterns = strings(row.excludedPatterns),
            // What is safe to delete is exactly what comes back by itself.
            .isRegenerable = row.riskTier == RiskTier::safeToDelete,
            .isBuiltIn = true,
            .enabled = true,
            .minAgeDays = std::nullopt,
            .synthesizedBy = std::nullopt,
            .createdAt = builtAt,
            .updatedAt = builtAt,
        });
    return rules;
}

} // namespace kestrow
