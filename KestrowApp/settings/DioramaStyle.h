#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

enum class DioramaStyleValue { classicCity, freightTerminal };

// The look of the diorama. The raw value is also the id.
class DioramaStyle : public EnumValue<DioramaStyle, DioramaStyleValue, 2> {
public:
    using EnumValue::EnumValue;
    using enum DioramaStyleValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString shortDescription() const;
    [[nodiscard]] QString iconName() const;

    // "freightTerminal" is itself; any other text is `classicCity`.
    [[nodiscard]] static DioramaStyle fromStored(const QString& raw);
};

} // namespace kestrow
