#include "rules/LinuxRules.h"

#include "rules/BuiltInRuleRow.h"

namespace kestrow {

std::vector<RuleDefinition> LinuxRules::catalogue(const QDateTime& builtAt)
{
    constexpr RiskTier review = RiskTier::reviewRequired;
    static const BuiltInRuleRow rows[] = {
        {"linux.maven.repository",
         "Maven Local Repository",
         "Downloaded dependencies and the artifacts that local builds installed with mvn install.",
         StorageCategory::developerCache,
         review,
         {"~/.m2/repository/**"},
         {}},
        {"linux.conda.packages",
         "conda Package Cache",
         "Downloaded and extracted conda packages; environments hard-link the extracted files.",
         StorageCategory::developerCache,
         review,
         {"~/miniconda3/pkgs/**", "~/anaconda3/pkgs/**", "~/miniforge3/pkgs/**", "~/.conda/pkgs/**"},
         {}},
        {"linux.rustup.toolchains",
         "rustup Toolchains",
         "Installed Rust toolchains; builds need them, so this is no cache.",
         StorageCategory::developerCache,
         review,
         {"~/.rustup/toolchains/**"},
         {}},
        {"linux.ai.torch_hub",
         "PyTorch Hub Models",
         "Pretrained models downloaded through PyTorch Hub and sentence-transformers.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.cache/torch/hub/**", "~/.cache/torch/sentence_transformers/**"},
         {}},
        {"linux.ai.gpt4all",
         "GPT4All Models",
         "Local language models downloaded by GPT4All.",
         StorageCategory::aiModelWeights,
         review,
         {"~/.local/share/nomic.ai/GPT4All/**"},
         {}},
        {"linux.docker.desktop_vm",
         "Docker Desktop VM Disk Image",
         "Docker Desktop for Linux VM disk image (Docker.raw).",
         StorageCategory::dockerVM,
         review,
         {"~/.docker/desktop/vms/*/data/Docker.raw", "~/.docker/desktop/vms/*/Docker.raw"},
         {}},
        {"linux.docker.rootless",
         "Rootless Docker Data Root",
         "Images, containers and volumes of a rootless Docker daemon.",
         StorageCategory::dockerVM,
         review,
         {"~/.local/share/docker/**"},
         {}},
        {"linux.podman.storage",
         "Podman Container Storage",
         "Images, containers and volumes of rootless Podman.",
         StorageCategory::dockerVM,
         review,
         {"~/.local/share/containers/storage/**"},
         {}},
        {"linux.podman.machine",
         "Podman Machine Images",
         "Disk images of Podman's virtual machines.",
         StorageCategory::dockerVM,
         review,
         {"~/.local/share/containers/podman/machine/**"},
         {}},
    };
    return BuiltInRuleRow::definitions(rows, builtAt);
}

} // namespace kestrow
