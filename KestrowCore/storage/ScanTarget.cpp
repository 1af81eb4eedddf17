#include "storage/ScanTarget.h"

#include "support/EnumTable.h"

#include <initializer_list>

namespace kestrow {

namespace {

struct TargetRow {
    ScanTarget::Value value;
    const char* rawValue;
    std::initializer_list<StorageCategory::Value> ownedCategories;
    std::initializer_list<const char*> homeRelativePaths;
    std::initializer_list<const char*> ruleIdPrefixes;
};

using Category = StorageCategory;

constexpr EnumTable<TargetRow, ScanTarget::count> targets{{{
    {ScanTarget::uvPython,
     "uvPython",
     {},
     {".cache/uv", "Library/Caches/uv", ".cache/pip", "Library/Caches/pip"},
     {"dev.uv.", "dev.pip."}},
    {ScanTarget::dockerVM, "dockerVM", {Category::dockerVM}, {"Library/Containers/com.docker.docker"}, {"dev.docker."}},
    {ScanTarget::xcode,
     "xcode",
     {Category::xcodeArtifacts},
     {"Library/Developer/Xcode", "Library/Developer/CoreSimulator/Caches"},
     {"dev.xcode."}},
    {ScanTarget::aiModels,
     "aiModels",
     {Category::aiModelWeights},
     {".cache/huggingface", ".cache/whisper", ".ollama", ".cache/lm-studio", ".lmstudio", ".cache/vllm", ".vllm"},
     {"ai."}},
    {ScanTarget::npmBun,
     "npmBun",
     {},
     {".npm", ".bun", ".pnpm-store", ".local/share/pnpm", "Library/pnpm"},
     {"dev.npm.", "dev.bun.", "dev.pnpm."}},
    {ScanTarget::cargo, "cargo", {}, {".cargo"}, {"dev.cargo."}},
    {ScanTarget::homebrew, "homebrew", {}, {"Library/Caches/Homebrew"}, {"dev.homebrew."}},
    {ScanTarget::systemCaches,
     "systemCaches",
     {Category::systemCaches, Category::systemLogs, Category::crashReports},
     {},
     {"sys.user.caches", "sys.user.logs", "sys.crash."}},
    {ScanTarget::browserCaches, "browserCaches", {Category::browserCaches}, {}, {"sys.browser."}},
}}};
static_assert(targets.isInDeclarationOrder());

QStringList texts(std::initializer_list<const char*> column)
{
    QStringList result;
    result.reserve(static_cast<qsizetype>(column.size()));
    for (const char* text : column)
        result.append(QString::fromUtf8(text));
    return result;
}

} // namespace

QString ScanTarget::rawValue() const
{
    return targets.rawValue(m_value);
}

std::vector<StorageCategory> ScanTarget::ownedCategories() const
{
    const auto& owned = targets[m_value].ownedCategories;
    return {owned.begin(), owned.end()};
}

QStringList ScanTarget::homeRelativePaths() const
{
    return texts(targets[m_value].homeRelativePaths);
}

QStringList ScanTarget::ruleIdPrefixes() const
{
    return texts(targets[m_value].ruleIdPrefixes);
}

std::optional<ScanTarget> ScanTarget::fromRawValue(const QString& raw)
{
    return targets.fromRawValue(raw);
}

} // namespace kestrow
