#pragma once

#include "support/JsonValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The outcome of walking the hash chain. On a break, `tamperedLineIndex` counts the
// non-blank lines from 0 while `failureReason` counts them from 1.
struct AuditVerificationResult {
    bool isValid = true;
    int totalEntries = 0;
    std::optional<int> tamperedLineIndex;
    std::optional<QString> failureReason;

    [[nodiscard]] JsonValue toJson() const;

    friend bool operator==(const AuditVerificationResult&, const AuditVerificationResult&) = default;
};

} // namespace kestrow
