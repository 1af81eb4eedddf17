#pragma once

#include "support/EnumCases.h"

#include <QString>

#include <optional>

namespace kestrow {

class JsonDecoder;

// How dangerous it is to remove an item. Tiers compare in declaration order: safeToDelete lowest.
class RiskTier {
public:
    enum class Value { safeToDelete, reviewRequired, keep };
    using enum Value;
    static constexpr std::size_t count = 3;

    constexpr RiskTier(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString symbolName() const;
    [[nodiscard]] constexpr bool isSelectedByDefault() const { return m_value == safeToDelete; }
    [[nodiscard]] constexpr bool canBeCleaned() const { return m_value != keep; }

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<RiskTier> fromRawValue(const QString& raw);
    // Strict raw value at `key`; throws JsonDecodingError.
    [[nodiscard]] static RiskTier decode(const JsonDecoder& decoder, const QString& key);
    [[nodiscard]] static constexpr std::array<RiskTier, count> allCases() { return enumCases<RiskTier, count>(); }

private:
    Value m_value;
};

} // namespace kestrow
