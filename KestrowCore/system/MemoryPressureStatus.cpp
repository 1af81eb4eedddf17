#include "system/MemoryPressureStatus.h"

namespace kestrow {

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
    switch (m_value) {
    case normal:
        return QStringLiteral("NORMAL");
    case warning:
        return QStringLiteral("WARNING");
    case critical:
        return QStringLiteral("CRITICAL");
    }
    return {};
}

} // namespace kestrow
