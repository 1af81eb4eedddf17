#include "system/MemoryPressureStatus.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<MemoryPressureStatus> pressures{{{
    {MemoryPressureStatus::normal, "NORMAL"},
    {MemoryPressureStatus::warning, "WARNING"},
    {MemoryPressureStatus::critical, "CRITICAL"},
}}};
static_assert(pressures.isInDeclarationOrder());

} // namespace

MemoryPressureStatus MemoryPressureStatus::forUsedPercentage(double percentage)
{
    if (percentage > 85.0)
        return critical;
    if (percentage > 70.0)
        return warning;
    return normal;
}

QString MemoryPressureStatus::rawValue() const
{
    return pressures.rawValue(m_value);
}

} // namespace kestrow
