#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

enum class SettingsTabValue { general, developer, safety, mcp, exclusions };

// The tabs of the Settings screen, in the order of its sidebar. The raw value is the
// sidebar's label.
class SettingsTab : public EnumValue<SettingsTab, SettingsTabValue, 5> {
public:
    using EnumValue::EnumValue;
    using enum SettingsTabValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
};

} // namespace kestrow
