#include "storage/StorageCategory.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct CategoryRow {
    StorageCategory::Value value;
    const char* rawValue;
    const char* displayName;
    const char* iconName;
    CategoryGroup::Value group;
    RiskTier::Value defaultRiskTier;
};

using Category = StorageCategory;
using Group = CategoryGroup;

constexpr EnumTable<CategoryRow, StorageCategory::count> categories{{{
    {Category::developerCache, "DEVELOPER_CACHE", "Developer Caches", "hammer.fill", Group::developer,
     RiskTier::safeToDelete},
    {Category::aiModelWeights, "AI_MODEL_WEIGHTS", "AI Model Weights", "brain.head.profile", Group::developer,
     RiskTier::reviewRequired},
    {Category::dockerVM, "DOCKER_VM", "Docker VM Disk Images", "shippingbox.fill", Group::developer,
     RiskTier::reviewRequired},
    {Category::xcodeArtifacts, "XCODE_ARTIFACTS", "Xcode Build Artifacts", "chevron.left.forwardslash.chevron.right",
     Group::developer, RiskTier::safeToDelete},
    {Category::strayDependencies, "STRAY_DEPENDENCIES", "Stray Project Dependencies", "shippingbox", Group::developer,
     RiskTier::reviewRequired},
    {Category::systemCaches, "SYSTEM_CACHES", "User System Caches", "archivebox.fill", Group::system,
     RiskTier::safeToDelete},
    {Category::systemLogs, "SYSTEM_LOGS", "User & System Logs", "doc.text.fill", Group::system, RiskTier::safeToDelete},
    {Category::crashReports, "CRASH_REPORTS", "Crash & Diagnostic Reports", "exclamationmark.bubble.fill",
     Group::system, RiskTier::safeToDelete},
    {Category::mailDownloads, "MAIL_DOWNLOADS", "Mail Attachment Downloads", "envelope.arrow.triangle.branch.fill",
     Group::system, RiskTier::reviewRequired},
    {Category::browserCaches, "BROWSER_CACHES", "Web Browser Caches", "globe", Group::system, RiskTier::safeToDelete},
    {Category::applicationBundles, "APPLICATION_BUNDLES", "Installed Applications", "app.badge.fill",
     Group::applications, RiskTier::reviewRequired},
    {Category::leftovers, "LEFTOVERS", "Application Leftovers", "trash.fill", Group::applications,
     RiskTier::safeToDelete},
    {Category::largeFiles, "LARGE_FILES", "Large & Old Files", "doc.text.magnifyingglass", Group::files,
     RiskTier::reviewRequired},
    {Category::startupItems, "STARTUP_ITEMS", "Startup & Login Items", "gearshape.arrow.triangle.2.circlepath",
     Group::startup, RiskTier::reviewRequired},
    {Category::dynamicRule, "DYNAMIC_RULE", "Dynamic Rule Matches", "wand.and.stars", Group::dynamic,
     RiskTier::safeToDelete},
    {Category::unknownAnomaly, "UNKNOWN_ANOMALY", "Storage Anomalies", "rays", Group::dynamic,
     RiskTier::reviewRequired},
}}};
static_assert(categories.isInDeclarationOrder());

QString folded(const QString& text)
{
    QString result = text;
    result.remove(QLatin1Char('_'));
    return result.toLower();
}

} // namespace

QString StorageCategory::rawValue() const
{
    return categories.rawValue(m_value);
}

QString StorageCategory::displayName() const
{
    return categories.text(m_value, &CategoryRow::displayName);
}

QString StorageCategory::iconName() const
{
    return categories.text(m_value, &CategoryRow::iconName);
}

CategoryGroup StorageCategory::group() const
{
    return categories[m_value].group;
}

RiskTier StorageCategory::defaultRiskTier() const
{
    return categories[m_value].defaultRiskTier;
}

std::optional<StorageCategory> StorageCategory::fromRawValue(const QString& raw)
{
    return categories.fromRawValue(raw);
}

StorageCategory StorageCategory::decode(const JsonDecoder& decoder, const QString& key)
{
    return categories.decode(decoder, key, "unknown category");
}

std::optional<StorageCategory> StorageCategory::parse(const QString& text)
{
    if (auto exact = fromRawValue(text))
        return exact;
    if (auto upper = fromRawValue(text.toUpper()))
        return upper;
    const QString loose = folded(text);
    for (const StorageCategory category : allCases())
        if (folded(category.rawValue()) == loose)
            return category;
    return std::nullopt;
}

} // namespace kestrow
