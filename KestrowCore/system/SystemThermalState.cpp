#include "system/SystemThermalState.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<SystemThermalState> thermalStates{{{
    {SystemThermalState::nominal, "NOMINAL"},
    {SystemThermalState::fair, "FAIR"},
    {SystemThermalState::serious, "SERIOUS"},
    {SystemThermalState::critical, "CRITICAL"},
}}};
static_assert(thermalStates.isInDeclarationOrder());

} // namespace

SystemThermalState SystemThermalState::fromPlatformValue(int value)
{
    const bool known = value >= 0 && static_cast<std::size_t>(value) < count;
    return known ? static_cast<Value>(value) : nominal;
}

QString SystemThermalState::rawValue() const
{
    return thermalStates.rawValue(m_value);
}

} // namespace kestrow
