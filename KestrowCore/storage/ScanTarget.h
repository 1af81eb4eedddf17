#pragma once

#include "storage/StorageCategory.h"
#include "support/EnumCases.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kestrow {

// The switches a user can turn off. The raw value is the case name, as settings store it.
class ScanTarget {
public:
    enum class Value { uvPython, dockerVM, xcode, aiModels, npmBun, cargo, homebrew, systemCaches, browserCaches };
    using enum Value;
    static constexpr std::size_t count = 9;

    constexpr ScanTarget(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] std::vector<StorageCategory> ownedCategories() const;
    [[nodiscard]] QStringList homeRelativePaths() const;
    [[nodiscard]] QStringList ruleIdPrefixes() const;

    [[nodiscard]] static std::optional<ScanTarget> fromRawValue(const QString& raw);
    [[nodiscard]] static constexpr std::array<ScanTarget, count> allCases() { return enumCases<ScanTarget, count>(); }

private:
    Value m_value;
};

} // namespace kestrow
