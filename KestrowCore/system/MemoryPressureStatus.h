#pragma once

#include <QString>

#include <cstddef>

namespace kestrow {

// How full memory is, judged from the share in use.
class MemoryPressureStatus {
public:
    enum class Value { normal, warning, critical };
    using enum Value;
    static constexpr std::size_t count = 3;

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
