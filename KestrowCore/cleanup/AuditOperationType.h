#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// What kind of run an audit line records. The text is the form in the line and in the hash.
// The pipeline writes dryRun, trash and purge, the restorer restore; scan is read but never
// written.
enum class AuditOperationTypeValue { scan, dryRun, trash, purge, restore };

class AuditOperationType : public EnumValue<AuditOperationType, AuditOperationTypeValue, 5> {
public:
    using EnumValue::EnumValue;
    using enum AuditOperationTypeValue;

    [[nodiscard]] QString text() const;
    // Exact and case-sensitive.
    [[nodiscard]] static std::optional<AuditOperationType> fromText(const QString& text);
};

} // namespace kestrow
