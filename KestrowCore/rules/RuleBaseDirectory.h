#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// Named base folders for building rule patterns. No rule carries one: patterns are
// self-contained strings, and this is vocabulary for tools that compose them.
enum class RuleBaseDirectoryValue { home, userCaches, userApplicationSupport, userDeveloper, systemLibrary, absolute };

class RuleBaseDirectory : public EnumValue<RuleBaseDirectory, RuleBaseDirectoryValue, 6> {
public:
    using EnumValue::EnumValue;
    using enum RuleBaseDirectoryValue;

    // The encoded form: the case name.
    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] static std::optional<RuleBaseDirectory> fromRawValue(const QString& raw);
};

} // namespace kestrow
