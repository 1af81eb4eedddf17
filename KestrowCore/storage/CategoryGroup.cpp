#include "storage/CategoryGroup.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct GroupRow {
    CategoryGroup::Value value;
    const char* rawValue;
    const char* displayName;
};

constexpr EnumTable<GroupRow, CategoryGroup::count> groups{{{
    {CategoryGroup::developer, "DEVELOPER", "Developer & AI"},
    {CategoryGroup::system, "SYSTEM", "System Junk"},
    {CategoryGroup::applications, "APPLICATIONS", "Applications & Leftovers"},
    {CategoryGroup::files, "FILES", "Large & Old Files"},
    {CategoryGroup::startup, "STARTUP", "Startup Items"},
    {CategoryGroup::dynamic, "DYNAMIC", "Adaptive Rules"},
}}};
static_assert(groups.isInDeclarationOrder());

} // namespace

QString CategoryGroup::rawValue() const
{
    return groups.rawValue(m_value);
}

QString CategoryGroup::displayName() const
{
    return groups.text(m_value, &GroupRow::displayName);
}

std::optional<CategoryGroup> CategoryGroup::fromRawValue(const QString& raw)
{
    return groups.fromRawValue(raw);
}

} // namespace kestrow
