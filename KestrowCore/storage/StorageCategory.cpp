#include "storage/StorageCategory.h"

#include "support/JsonDecoder.h"

namespace kestrow {

namespace {

struct CategoryRow {
    const char* rawValue;
    const char* displayName;
    const char* iconName;
    CategoryGroup::Value group;
    RiskTier::Value defaultRiskTier;
};

constexpr std::array<CategoryRow, StorageCategory::count> rows{{
    {"DEVELOPER_CACHE", "Developer Caches", "hammer.fill", CategoryGroup::developer, RiskTier::safeToDelete},
    {"AI_MODEL_WEIGHTS", "AI Model Weights", "brain.head.profile", CategoryGroup::developer, RiskTier::reviewRequired},
    {"DOCKER_VM", "Docker VM Disk Images", "shippingbox.fill", CategoryGroup::developer, RiskTier::reviewRequired},
    {"XCODE_ARTIFACTS", "Xcode Build Artifacts", "chevron.left.forwardslash.chevron.right", CategoryGroup::developer,
     RiskTier::safeToDelete},
    {"STRAY_DEPENDENCIES", "Stray Project Dependencies", "shippingbox", CategoryGroup::developer,
     RiskTier::reviewRequired},
    {"SYSTEM_CACHES", "User System Caches", "archivebox.fill", CategoryGroup::system, RiskTier::safeToDelete},
    {"SYSTEM_LOGS", "User & System Logs", "doc.text.fill", CategoryGroup::system, RiskTier::safeToDelete},
    {"CRASH_REPORTS", "Crash & Diagnostic Reports", "exclamationmark.bubble.fill", CategoryGroup::system,
     RiskTier::safeToDelete},
    {"MAIL_DOWNLOADS", "Mail Attachment Downloads", "envelope.arrow.triangle.branch.fill", CategoryGroup::system,
     RiskTier::reviewRequired},
    {"BROWSER_CACHES", "Web Browser Caches", "globe", CategoryGroup::system, RiskTier::safeToDelete},
    {"APPLICATION_BUNDLES", "Installed Applications", "app.badge.fill", CategoryGroup::applications,
     RiskTier::reviewRequired},
    {"LEFTOVERS", "Application Leftovers", "trash.fill", CategoryGroup::applications, RiskTier::safeToDelete},
    {"LARGE_FILES", "Large & Old Files", "doc.text.magnifyingglass", CategoryGroup::files, RiskTier::reviewRequired},
    {"STARTUP_ITEMS", "Startup & Login Items", "gearshape.arrow.triangle.2.circlepath", CategoryGroup::startup,
     RiskTier::reviewRequired},
    {"DYNAMIC_RULE", "Dynamic Rule Matches", "wand.and.stars", CategoryGroup::dynamic, RiskTier::safeToDelete},
    {"UNKNOWN_ANOMALY", "Storage Anomalies", "rays", CategoryGroup::dynamic, RiskTier::reviewRequired},
}};

const CategoryRow& row(StorageCategory category)
{
    return rows[static_cast<size_t>(static_cast<int>(category))];
}

QString folded(const QString& text)
{
    QString result = text;
    result.remove(QLatin1Char('_'));
    return result.toLower();
}

} // namespace

QString StorageCategory::rawValue() const
{
    return QLatin1String(row(*this).rawValue);
}
QString StorageCategory::displayName() const
{
    return QString::fromUtf8(row(*this).displayName);
}
QString StorageCategory::iconName() const
{
    return QLatin1String(row(*this).iconName);
}
CategoryGroup StorageCategory::group() const
{
    return row(*this).group;
}
RiskTier StorageCategory::defaultRiskTier() const
{
    return row(*this).defaultRiskTier;
}

std::array<StorageCategory, StorageCategory::count> StorageCategory::allCases()
{
    return {developerCache, aiModelWeights, dockerVM,      xcodeArtifacts, strayDependencies,  systemCaches,
            systemLogs,     crashReports,   mailDownloads, browserCaches,  applicationBundles, leftovers,
            largeFiles,     startupItems,   dynamicRule,   unknownAnomaly};
}

std::optional<StorageCategory> StorageCategory::fromRawValue(const QString& raw)
{
    for (const StorageCategory category : allCases())
        if (category.rawValue() == raw)
            return category;
    return std::nullopt;
}

StorageCategory StorageCategory::decode(const JsonDecoder& decoder, const QString& key)
{
    const auto category = fromRawValue(decoder.string(key));
    if (!category)
        decoder.fail(key, QStringLiteral("unknown category"));
    return *category;
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
