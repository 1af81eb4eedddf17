#include "apps/DependencyLocation.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct LocationRow {
    DependencyLocation::Value value;
    const char* rawValue;
    const char* displayName;
};

constexpr EnumTable<LocationRow, DependencyLocation::count> locations{{{
    {DependencyLocation::applicationBundle, "APPLICATION_BUNDLE", "Application Bundle (.app)"},
    {DependencyLocation::applicationSupport, "APPLICATION_SUPPORT", "Application Support"},
    {DependencyLocation::caches, "CACHES", "Caches"},
    {DependencyLocation::preferences, "PREFERENCES", "Preferences (.plist)"},
    {DependencyLocation::savedApplicationState, "SAVED_APPLICATION_STATE", "Saved Application State"},
    {DependencyLocation::webKit, "WEBKIT", "WebKit Storage"},
    {DependencyLocation::httpStorages, "HTTP_STORAGES", "HTTP Network Storages"},
    {DependencyLocation::containers, "CONTAINERS", "Sandbox Containers"},
    {DependencyLocation::groupContainers, "GROUP_CONTAINERS", "App Group Containers"},
    {DependencyLocation::applicationScripts, "APPLICATION_SCRIPTS", "Application Scripts"},
    {DependencyLocation::launchAgents, "LAUNCH_AGENTS", "Launch Agents"},
    {DependencyLocation::crashReports, "CRASH_REPORTS", "Crash Reports & Logs"},
}}};
static_assert(locations.isInDeclarationOrder());

} // namespace

QString DependencyLocation::rawValue() const
{
    return locations.rawValue(m_value);
}

QString DependencyLocation::displayName() const
{
    return locations.text(m_value, &LocationRow::displayName);
}

std::optional<DependencyLocation> DependencyLocation::fromRawValue(const QString& raw)
{
    return locations.fromRawValue(raw);
}

} // namespace kestrow
