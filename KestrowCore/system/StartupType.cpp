#include "system/StartupType.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct TypeRow {
    StartupType::Value value;
    const char* rawValue;
    const char* displayName;
};

constexpr EnumTable<TypeRow, StartupType::count> types{{{
    {StartupType::userLaunchAgent, "USER_LAUNCH_AGENT", "User Launch Agent"},
    {StartupType::systemLaunchAgent, "SYSTEM_LAUNCH_AGENT", "System Launch Agent"},
    {StartupType::systemLaunchDaemon, "SYSTEM_LAUNCH_DAEMON", "System Launch Daemon"},
    {StartupType::loginItem, "LOGIN_ITEM", "Login Item"},
}}};
static_assert(types.isInDeclarationOrder());

} // namespace

QString StartupType::rawValue() const
{
    return types.rawValue(m_value);
}

QString StartupType::displayName() const
{
    return types.text(m_value, &TypeRow::displayName);
}

} // namespace kestrow
