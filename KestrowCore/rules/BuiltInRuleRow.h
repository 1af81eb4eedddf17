#pragma once

#include "rules/RuleDefinition.h"

#include <QDateTime>

#include <span>
#include <vector>

namespace kestrow {

// A rule compiled into the program, as its table writes it.
struct BuiltInRuleRow {
    const char* id;
    const char* name;
    const char* description;
    StorageCategory category;
    RiskTier riskTier;
    std::vector<const char*> patterns;
    std::vector<const char*> excludedPatterns;

    // The rows as rules, in their order: built in, enabled, both time stamps `builtAt`.
    [[nodiscard]] static std::vector<RuleDefinition> definitions(std::span<const BuiltInRuleRow> rows,
                                                                 const QDateTime& builtAt);
};

} // namespace kestrow
