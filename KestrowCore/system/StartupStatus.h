#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// Whether a launch item starts: `orphan` when the program it would start is missing.
enum class StartupStatusValue { enabled, disabled, orphan };

class StartupStatus : public EnumValue<StartupStatus, StartupStatusValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum StartupStatusValue;

    [[nodiscard]] QString rawValue() const;
};

} // namespace kestrow
