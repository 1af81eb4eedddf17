#pragma once

#include "storage/StorageCategory.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace kestrow {

// The switches a user can turn off. The raw value is the case name, as settings store it.
class ScanTarget {
public:
    enum Value : int { uvPython, dockerVM, xcode, aiModels, npmBun, cargo, homebrew, systemCaches, browserCaches };
    static constexpr int count = 9;

    constexpr ScanTarget(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;

    [[nodiscard]] static std::optional<ScanTarget> fromRawValue(const QString& raw);
    [[nodiscard]] static constexpr std::array<ScanTarget, count> allCases()
    {
        return {uvPython, dockerVM, xcode, aiModels, npmBun, cargo, homebrew, systemCaches, browserCaches};
    }

private:
    Value m_value;
};

} // namespace kestrow
