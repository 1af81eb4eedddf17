#include "system/StartupStatus.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<StartupStatus> statuses{{{
    {StartupStatus::enabled, "ENABLED"},
    {StartupStatus::disabled, "DISABLED"},
    {StartupStatus::orphan, "ORPHAN"},
}}};
static_assert(statuses.isInDeclarationOrder());

} // namespace

QString StartupStatus::rawValue() const
{
    return statuses.rawValue(m_value);
}

} // namespace kestrow
