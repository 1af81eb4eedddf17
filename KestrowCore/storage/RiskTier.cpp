#include "storage/RiskTier.h"

#include "support/JsonDecoder.h"

namespace kestrow {

QString RiskTier::rawValue() const
{
    switch (m_value) {
    case safeToDelete:
        return QStringLiteral("SAFE_TO_DELETE");
    case reviewRequired:
        return QStringLiteral("REVIEW_REQUIRED");
    case keep:
        return QStringLiteral("KEEP");
    }
    return {};
}

QString RiskTier::displayName() const
{
    switch (m_value) {
    case safeToDelete:
        return QStringLiteral("Safe to Clean");
    case reviewRequired:
        return QStringLiteral("Review Required");
    case keep:
        return QStringLiteral("Protected (Keep)");
    }
    return {};
}

QString RiskTier::symbolName() const
{
    switch (m_value) {
    case safeToDelete:
        return QStringLiteral("checkmark.shield.fill");
    case reviewRequired:
        return QStringLiteral("exclamationmark.triangle.fill");
    case keep:
        return QStringLiteral("lock.shield.fill");
    }
    return {};
}

std::optional<RiskTier> RiskTier::fromRawValue(const QString& raw)
{
    for (const RiskTier tier : allCases())
        if (tier.rawValue() == raw)
            return tier;
    return std::nullopt;
}

RiskTier RiskTier::decode(const JsonDecoder& decoder, const QString& key)
{
    const auto tier = fromRawValue(decoder.string(key));
    if (!tier)
        decoder.fail(key, QStringLiteral("unknown risk tier"));
    return *tier;
}

} // namespace kestrow
