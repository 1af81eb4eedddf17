#include "storage/ScanTarget.h"

namespace kestrow {

QString ScanTarget::rawValue() const
{
    switch (m_value) {
    case uvPython:
        return QStringLiteral("uvPython");
    case dockerVM:
        return QStringLiteral("dockerVM");
    case xcode:
        return QStringLiteral("xcode");
    case aiModels:
        return QStringLiteral("aiModels");
    case npmBun:
        return QStringLiteral("npmBun");
    case cargo:
        return QStringLiteral("cargo");
    case homebrew:
        return QStringLiteral("homebrew");
    case systemCaches:
        return QStringLiteral("systemCaches");
    case browserCaches:
        return QStringLiteral("browserCaches");
    }
    return {};
}

std::vector<StorageCategory> ScanTarget::ownedCategories() const
{
    switch (m_value) {
    case dockerVM:
        return {StorageCategory::dockerVM};
    case xcode:
        return {StorageCategory::xcodeArtifacts};
    case aiModels:
        return {StorageCategory::aiModelWeights};
    case systemCaches:
        return {StorageCategory::systemCaches, StorageCategory::systemLogs, StorageCategory::crashReports};
    case browserCaches:
        return {StorageCategory::browserCaches};
    case uvPython:
    case npmBun:
    case cargo:
    case homebrew:
        break;
    }
    return {};
}

QStringList ScanTarget::homeRelativePaths() const
{
    switch (m_value) {
    case uvPython:
        return {QStringLiteral(".cache/uv"), QStringLiteral("Library/Caches/uv"), QStringLiteral(".cache/pip"),
                QStringLiteral("Library/Caches/pip")};
    case dockerVM:
        return {QStringLiteral("Library/Containers/com.docker.docker")};
    case xcode:
        return {QStringLiteral("Library/Developer/Xcode"), QStringLiteral("Library/Developer/CoreSimulator/Caches")};
    case aiModels:
        return {QStringLiteral(".cache/huggingface"),
                QStringLiteral(".cache/whisper"),
                QStringLiteral(".ollama"),
                QStringLiteral(".cache/lm-studio"),
                QStringLiteral(".lmstudio"),
                QStringLiteral(".cache/vllm"),
                QStringLiteral(".vllm")};
    case npmBun:
        return {QStringLiteral(".npm"), QStringLiteral(".bun"), QStringLiteral(".pnpm-store"),
                QStringLiteral(".local/share/pnpm"), QStringLiteral("Library/pnpm")};
    case cargo:
        return {QStringLiteral(".cargo")};
    case homebrew:
        return {QStringLiteral("Library/Caches/Homebrew")};
    case systemCaches:
    case browserCaches:
        break;
    }
    return {};
}

QStringList ScanTarget::ruleIdPrefixes() const
{
    switch (m_value) {
    case uvPython:
        return {QStringLiteral("dev.uv."), QStringLiteral("dev.pip.")};
    case dockerVM:
        return {QStringLiteral("dev.docker.")};
    case xcode:
        return {QStringLiteral("dev.xcode.")};
    case aiModels:
        return {QStringLiteral("ai.")};
    case npmBun:
        return {QStringLiteral("dev.npm."), QStringLiteral("dev.bun."), QStringLiteral("dev.pnpm.")};
    case cargo:
        return {QStringLiteral("dev.cargo.")};
    case homebrew:
        return {QStringLiteral("dev.homebrew.")};
    case systemCaches:
        return {QStringLiteral("sys.user.caches"), QStringLiteral("sys.user.logs"), QStringLiteral("sys.crash.")};
    case browserCaches:
        return {QStringLiteral("sys.browser.")};
    }
    return {};
}

std::optional<ScanTarget> ScanTarget::fromRawValue(const QString& raw)
{
    for (const ScanTarget target : allCases())
        if (target.rawValue() == raw)
            return target;
    return std::nullopt;
}

} // namespace kestrow
