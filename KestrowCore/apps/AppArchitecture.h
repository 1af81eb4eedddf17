#pragma once

#include "platform/ExecutableHeadReader.h"
#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The processor an application's main executable is built for.
enum class AppArchitectureValue { arm64, x86_64, universal, unknown };

class AppArchitecture : public EnumValue<AppArchitecture, AppArchitectureValue, 4> {
public:
    using EnumValue::EnumValue;
    using enum AppArchitectureValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<AppArchitecture> fromRawValue(const QString& raw);
    // Both 64-bit families make a universal executable; neither, an unknown one.
    [[nodiscard]] static AppArchitecture fromProcessors(const ExecutableProcessors& processors);
};

} // namespace kestrow
