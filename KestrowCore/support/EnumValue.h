#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace kestrow {

// The shape every enumeration type shares: it holds one of the `count` enumerators of its scoped
// `Value`, numbered from zero, and converts to and from that value implicitly but never to an
// integer. `Derived` adds the enumerators to its scope (`using enum`) and its own methods.
template <typename Derived, typename ValueType, std::size_t valueCount> class EnumValue {
public:
    using Value = ValueType;
    static constexpr std::size_t count = valueCount;

    constexpr EnumValue(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    // Every value, in declaration order.
    [[nodiscard]] static constexpr std::array<Derived, count> allCases()
    {
        return []<std::size_t... index>(std::index_sequence<index...>)
        {
            return std::array<Derived, count>{Derived(static_cast<Value>(index))...};
        }
        (std::make_index_sequence<count>{});
    }

protected:
    Value m_value;
};

} // namespace kestrow
