#include "apps/AppFootprint.h"

namespace kestrow {

AppFootprint::AppFootprint(InstalledApp app, std::vector<ResolvedDependency> dependencies)
    : m_app(std::move(app))
    , m_dependencies(std::move(dependencies))
{
    bool hasBundle = false;
    for (const ResolvedDependency& dependency : m_dependencies) {
        m_totalAllocatedSizeBytes += dependency.allocatedSizeBytes;
        m_totalLogicalSizeBytes += dependency.logicalSizeBytes;
        ++m_itemCountByLocation[static_cast<std::size_t>(DependencyLocation::Value(dependency.location))];
        hasBundle = hasBundle || dependency.location == DependencyLocation::applicationBundle;
    }
    m_totalItemCount = static_cast<int>(m_dependencies.size());
    if (!hasBundle) {
        // The bundle went or was never found: the record's own figures still count.
        m_totalAllocatedSizeBytes += m_app.bundleSizeBytes;
        m_totalLogicalSizeBytes += m_app.logicalSizeBytes != 0 ? m_app.logicalSizeBytes : m_app.bundleSizeBytes;
        ++m_totalItemCount;
        ++m_itemCountByLocation[static_cast<std::size_t>(DependencyLocation::applicationBundle)];
    }

    if (m_app.isSystemApp || m_app.isProtected)
        m_blockingReason = m_app.protectionReason.value_or(QStringLiteral("Protected macOS system application"));
    else if (m_app.isRunning)
        m_blockingReason = QStringLiteral("Application is currently running");
}

int AppFootprint::itemCount(DependencyLocation location) const
{
    return m_itemCountByLocation[static_cast<std::size_t>(DependencyLocation::Value(location))];
}

JsonValue AppFootprint::toJson(DateEncoding dates) const
{
    JsonValue::Array dependencies;
    for (const ResolvedDependency& dependency : m_dependencies)
        dependencies.push_back(dependency.toJson(dates));
    JsonValue::Object counts;
    for (const DependencyLocation location : DependencyLocation::allCases())
        if (const int count = itemCount(location))
            counts.emplace_back(location.rawValue(), count);
    JsonValue json = JsonValue::object({
        {QStringLiteral("app"), m_app.toJson()},
        {QStringLiteral("dependencies"), JsonValue(std::move(dependencies))},
        {QStringLiteral("totalAllocatedSizeBytes"), m_totalAllocatedSizeBytes},
        {QStringLiteral("totalLogicalSizeBytes"), m_totalLogicalSizeBytes},
        {QStringLiteral("totalItemCount"), m_totalItemCount},
        {QStringLiteral("itemCountByLocation"), JsonValue(std::move(counts))},
        {QStringLiteral("canUninstall"), canUninstall()},
    });
    if (m_blockingReason)
        json.insert(QStringLiteral("blockingReason"), *m_blockingReason);
    return json;
}

} // namespace kestrow
