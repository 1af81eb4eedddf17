#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The twelve kinds of place where an application's data lives, each a folder of the home's
// Library apart from the bundle itself.
enum class DependencyLocationValue {
    applicationBundle,
    applicationSupport,
    caches,
    preferences,
    savedApplicationState,
    webKit,
    httpStorages,
    containers,
    groupContainers,
    applicationScripts,
    launchAgents,
    crashReports,
};

class DependencyLocation : public EnumValue<DependencyLocation, DependencyLocationValue, 12> {
public:
    using EnumValue::EnumValue;
    using enum DependencyLocationValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;

    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<DependencyLocation> fromRawValue(const QString& raw);
};

} // namespace kestrow
