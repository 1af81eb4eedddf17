#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace kestrow {

// Every value of `Enum`, a class wrapping its scoped `Value` whose `count` enumerators are
// numbered from zero, in declaration order.
template <typename Enum, std::size_t count> [[nodiscard]] constexpr std::array<Enum, count> enumCases()
{
    return []<std::size_t... index>(std::index_sequence<index...>)
    {
        return std::array<Enum, count>{Enum(static_cast<typename Enum::Value>(index))...};
    }
    (std::make_index_sequence<count>{});
}

} // namespace kestrow
