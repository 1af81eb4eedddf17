#include "system/SystemThermalState.h"

namespace kestrow {

SystemThermalState SystemThermalState::fromPlatformValue(int value)
{
    return value >= nominal && value <= critical ? static_cast<Value>(value) : nominal;
}

QString SystemThermalState::rawValue() const
{
    switch (m_value) {
    case nominal:
        return QStringLiteral("NOMINAL");
    case fair:
        return QStringLiteral("FAIR");
    case serious:
        return QStringLiteral("SERIOUS");
    case critical:
        return QStringLiteral("CRITICAL");
    }
    return {};
}

} // namespace kestrow
