#include "rules/RuleBaseDirectory.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<RuleBaseDirectory> directories{{{
    {RuleBaseDirectory::home, "home"},
    {RuleBaseDirectory::userCaches, "userCaches"},
    {RuleBaseDirectory::userApplicationSupport, "userApplicationSupport"},
    {RuleBaseDirectory::userDeveloper, "userDeveloper"},
    {RuleBaseDirectory::systemLibrary, "systemLibrary"},
    {RuleBaseDirectory::absolute, "absolute"},
}}};
static_assert(directories.isInDeclarationOrder());

} // namespace

QString RuleBaseDirectory::rawValue() const
{
    return directories.rawValue(m_value);
}

std::optional<RuleBaseDirectory> RuleBaseDirectory::fromRawValue(const QString& raw)
{
    return directories.fromRawValue(raw);
}

} // namespace kestrow
