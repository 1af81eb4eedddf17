#pragma once

#include "support/EnumCases.h"

#include <QString>

#include <optional>

namespace kestrow {

// What kind of run an audit line records. The text is the form in the line and in the hash.
// The pipeline writes dryRun, trash and purge; scan and restore are read but never written.
class AuditOperationType {
public:
    enum class Value { scan, dryRun, trash, purge, restore };
    using enum Value;
    static constexpr std::size_t count = 5;

    constexpr AuditOperationType(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString text() const;
    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<AuditOperationType> fromText(const QString& text);
    [[nodiscard]] static constexpr std::array<AuditOperationType, count> allCases()
    {
        return enumCases<AuditOperationType, count>();
    }

private:
    Value m_value;
};

} // namespace kestrow
