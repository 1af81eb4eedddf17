#pragma once

#include "presentation/ThemeColor.h"
#include "storage/RiskTier.h"

#include <QString>

namespace kestrow {

// The application's own words for a tier, which differ on purpose from its display name.
struct RiskPill {
    QString text;
    ThemeColor color;

    [[nodiscard]] static RiskPill forTier(RiskTier tier);
};

} // namespace kestrow
