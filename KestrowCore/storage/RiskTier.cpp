#include "storage/RiskTier.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct TierRow {
    RiskTier::Value value;
    const char* rawValue;
    const char* displayName;
    const char* symbolName;
};

constexpr EnumTable<TierRow, RiskTier::count> tiers{{{
    {RiskTier::safeToDelete, "SAFE_TO_DELETE", "Safe to Clean", "checkmark.shield.fill"},
    {RiskTier::reviewRequired, "REVIEW_REQUIRED", "Review Required", "exclamationmark.triangle.fill"},
    {RiskTier::keep, "KEEP", "Protected (Keep)", "lock.shield.fill"},
}}};
static_assert(tiers.isInDeclarationOrder());

} // namespace

QString RiskTier::rawValue() const
{
    return tiers.rawValue(m_value);
}

QString RiskTier::displayName() const
{
    return tiers.text(m_value, &TierRow::displayName);
}

QString RiskTier::symbolName() const
{
    return tiers.text(m_value, &TierRow::symbolName);
}

std::optional<RiskTier> RiskTier::fromRawValue(const QString& raw)
{
    return tiers.fromRawValue(raw);
}

RiskTier RiskTier::decode(const JsonDecoder& decoder, const QString& key)
{
    return tiers.decode(decoder, key, "unknown risk tier");
}

} // namespace kestrow
