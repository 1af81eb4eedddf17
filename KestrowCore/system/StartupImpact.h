#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// How much a launch item likely weighs on the machine. Ordered by declaration: `low` lowest,
// `unknown` highest, so that what cannot be judged sorts first.
enum class StartupImpactValue { low, medium, high, unknown };

class StartupImpact : public EnumValue<StartupImpact, StartupImpactValue, 4> {
public:
    using EnumValue::EnumValue;
    using enum StartupImpactValue;

    [[nodiscard]] QString rawValue() const;
};

} // namespace kestrow
