#pragma once

#include <QString>

#include <cstddef>

namespace kestrow {

// The thermal state as the vitals report it.
class SystemThermalState {
public:
    enum class Value { nominal, fair, serious, critical };
    using enum Value;
    static constexpr std::size_t count = 4;

    constexpr SystemThermalState(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    // The platform's value: 0 to 3 in order; anything else is nominal.
    [[nodiscard]] static SystemThermalState fromPlatformValue(int value);
    [[nodiscard]] QString rawValue() const;

private:
    Value m_value;
};

} // namespace kestrow
