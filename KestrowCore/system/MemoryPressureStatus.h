#pragma once

#include <QString>

namespace kestrow {

// How full memory is, judged from the share in use.
class MemoryPressureStatus {
public:
    enum Value : int { normal, warning, critical };

    constexpr MemoryPressureStatus(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    // Above 85 percent critical, above 70 warning; each boundary belongs to the lower status.
    [[nodiscard]] static MemoryPressureStatus forUsedPercentage(double percentage);
    [[nodiscard]] QString rawValue() const;

private:
    Value m_value;
};

} // namespace kestrow
