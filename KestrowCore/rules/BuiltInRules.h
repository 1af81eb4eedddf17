#pragma once

#include "rules/RuleDefinition.h"

#include <QDateTime>

#include <vector>

namespace kestrow {

// The rules compiled into the program: where developer, AI and system storage lives.
// Every pattern here passes the sandbox validator and must keep doing so.
class BuiltInRules {
public:
    // The twenty-four rules in catalogue order, all built in and enabled, both time stamps
    // `builtAt`.
    [[nodiscard]] static std::vector<RuleDefinition> catalogue(const QDateTime& builtAt);
};

} // namespace kestrow
