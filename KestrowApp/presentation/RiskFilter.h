#pragma once

#include "storage/RiskTier.h"
#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

enum class RiskFilterValue { all, safe, review };

// The segmented control of the Sweep screen.
class RiskFilter : public EnumValue<RiskFilter, RiskFilterValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum RiskFilterValue;

    [[nodiscard]] QString rawValue() const;
    // `keep` passes only under `all`.
    [[nodiscard]] bool passes(RiskTier tier) const;
};

} // namespace kestrow
