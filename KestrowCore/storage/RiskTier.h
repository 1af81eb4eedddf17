#pragma once

#include <QString>

namespace kestrow {
class JsonDecoder;
}

#include <array>
#include <optional>

namespace kestrow {

// How dangerous it is to remove an item. Tiers compare by ordinal: safeToDelete lowest.
class RiskTier {
public:
    enum Value : int { safeToDelete, reviewRequired, keep };

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
    [[nodiscard]] static constexpr std::array<RiskTier, 3> allCases() { return {safeToDelete, reviewRequired, keep}; }

private:
    Value m_value;
};

} // namespace kestrow
