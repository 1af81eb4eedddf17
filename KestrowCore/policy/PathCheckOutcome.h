#pragma once

#include "policy/RiskClassificationResult.h"
#include "safety/SandboxSecurityError.h"
#include "support/JsonValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// What checking one path found: whether the sandbox allows moving it to the Trash, and the
// classifier's advice on removing it.
struct PathCheckOutcome {
    QString path; // as given
    std::optional<SandboxSecurityError> error;
    RiskClassificationResult classification;

    // Keys in a fixed order; the error and the matched rule only when there are.
    [[nodiscard]] JsonValue toJson() const;
};

} // namespace kestrow
