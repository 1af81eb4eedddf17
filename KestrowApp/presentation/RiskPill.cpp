#include "presentation/RiskPill.h"

namespace kestrow {

RiskPill RiskPill::forTier(RiskTier tier)
{
    switch (tier) {
    case RiskTier::safeToDelete:
        return {QStringLiteral("Safe to sweep"), ThemeColor::safeTeal};
    case RiskTier::reviewRequired:
        return {QStringLiteral("Ask me first"), ThemeColor::askAmber};
    case RiskTier::keep:
        break;
    }
    return {QStringLiteral("Hands off"), ThemeColor::inkTertiary};
}

} // namespace kestrow
