#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// Where a launch item comes from. `loginItem` is part of the vocabulary; no listing makes one.
enum class StartupTypeValue { userLaunchAgent, systemLaunchAgent, systemLaunchDaemon, loginItem };

class StartupType : public EnumValue<StartupType, StartupTypeValue, 4> {
public:
    using EnumValue::EnumValue;
    using enum StartupTypeValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;
};

} // namespace kestrow
