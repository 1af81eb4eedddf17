#pragma once

#include "storage/StorageCategory.h"
#include "support/EnumValue.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kestrow {

// The switches a user can turn off. The raw value is the case name, as settings store it.
enum class ScanTargetValue {
    uvPython,
    dockerVM,
    xcode,
    aiModels,
    npmBun,
    cargo,
    homebrew,
    systemCaches,
    browserCaches
};

class ScanTarget : public EnumValue<ScanTarget, ScanTargetValue, 9> {
public:
    using EnumValue::EnumValue;
    using enum ScanTargetValue;

    [[nodiscard]] QString rawValue() const;

    [[nodiscard]] static std::optional<ScanTarget> fromRawValue(const QString& raw);
};

} // namespace kestrow
