#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

class JsonDecoder;

// How dangerous it is to remove an item. Tiers compare in declaration order: safeToDelete lowest.
enum class RiskTierValue { safeToDelete, reviewRequired, keep };

class RiskTier : public EnumValue<RiskTier, RiskTierValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum RiskTierValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString symbolName() const;
    [[nodiscard]] constexpr bool isSelectedByDefault() const { return m_value == safeToDelete; }
    [[nodiscard]] constexpr bool canBeCleaned() const { return m_value != keep; }

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<RiskTier> fromRawValue(const QString& raw);
    // Strict raw value at `key`; throws JsonDecodingError.
    [[nodiscard]] static RiskTier decode(const JsonDecoder& decoder, const QString& key);
};

} // namespace kestrow
