#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// The two looks of the city stage. The settings store the raw value; an unknown stored text
// reads as the first case.
enum class DioramaStyleValue { classicCity, freightTerminal };

class DioramaStyle : public EnumValue<DioramaStyle, DioramaStyleValue, 2> {
public:
    using EnumValue::EnumValue;
    using enum DioramaStyleValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString shortDescription() const;
    [[nodiscard]] QString iconName() const;

    // "freightTerminal" gives freightTerminal, any other text classicCity.
    [[nodiscard]] static DioramaStyle fromStored(const QString& raw);
};

} // namespace kestrow
