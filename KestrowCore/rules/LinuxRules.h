#pragma once

#include "rules/RuleDefinition.h"

#include <QDateTime>

#include <vector>

namespace kestrow {

// The rules compiled in for Linux homes, beside the built-in catalogue: Linux places whose
// tier differs from what their category gives, so that a scan and a check of the same path
// agree. Every pattern passes the sandbox validator.
class LinuxRules {
public:
    // Built in and enabled, both time stamps `builtAt`, ids in the "linux." namespace.
    [[nodiscard]] static std::vector<RuleDefinition> catalogue(const QDateTime& builtAt);
};

} // namespace kestrow
