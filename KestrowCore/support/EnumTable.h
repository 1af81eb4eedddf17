#pragma once

#include "support/JsonDecoder.h"

#include <QLatin1String>
#include <QString>

#include <array>
#include <cstddef>
#include <optional>

namespace kestrow {

// The texts of one enumeration, one row per enumerator. A row is an aggregate holding the
// enumerator as `value`, its stored ASCII text as `rawValue`, and whatever further columns the
// enumeration has. Rows sit in declaration order so that a value finds its row by index; each
// table asserts this with isInDeclarationOrder().
template <typename Row, std::size_t count> struct EnumTable {
    using Value = decltype(Row::value);

    std::array<Row, count> rows;

    [[nodiscard]] constexpr bool isInDeclarationOrder() const
    {
        for (std::size_t index = 0; index < count; ++index)
            if (static_cast<std::size_t>(rows[index].value) != index)
                return false;
        return true;
    }

    [[nodiscard]] constexpr const Row& operator[](Value value) const { return rows[static_cast<std::size_t>(value)]; }

    // A UTF-8 text column of `value`'s row, such as a display name.
    [[nodiscard]] QString text(Value value, const char* Row::*column) const
    {
        return QString::fromUtf8((*this)[value].*column);
    }

    [[nodiscard]] QString rawValue(Value value) const { return QLatin1String((*this)[value].rawValue); }

    // Exact and case-sensitive.
    [[nodiscard]] std::optional<Value> fromRawValue(const QString& raw) const
    {
        for (const Row& row : rows)
            if (raw == QLatin1String(row.rawValue))
                return row.value;
        return std::nullopt;
    }

    // The raw value at `key`; a missing key, another type or an unknown text throws
    // JsonDecodingError, the last with `unknownProblem`.
    [[nodiscard]] Value decode(const JsonDecoder& decoder, const QString& key, const char* unknownProblem) const
    {
        const auto value = fromRawValue(decoder.string(key));
        if (!value)
            decoder.fail(key, QLatin1String(unknownProblem));
        return *value;
    }
};

// The row and the table of an enumeration whose only column is its raw value.
template <typename Value> struct RawValueRow {
    Value value;
    const char* rawValue;
};
template <typename Enum> using RawValueTable = EnumTable<RawValueRow<typename Enum::Value>, Enum::count>;

} // namespace kestrow
