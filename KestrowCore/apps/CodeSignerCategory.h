#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// Who signed an application. `unsignedCode` stands for the case stored as "Unsigned", whose
// own name is a keyword here.
enum class CodeSignerCategoryValue { applePlatform, developerId, macAppStore, adHoc, unsignedCode };

class CodeSignerCategory : public EnumValue<CodeSignerCategory, CodeSignerCategoryValue, 5> {
public:
    using EnumValue::EnumValue;
    using enum CodeSignerCategoryValue;

    [[nodiscard]] QString rawValue() const;
    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<CodeSignerCategory> fromRawValue(const QString& raw);
};

} // namespace kestrow
