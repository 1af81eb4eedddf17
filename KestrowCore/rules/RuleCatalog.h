#pragma once

#include "rules/RuleDefinition.h"

#include <QByteArray>
#include <QDateTime>

#include <cstdint>
#include <vector>

namespace kestrow {

// The persisted form of the non-built-in rules, the file "rules.json".
struct RuleCatalog {
    static constexpr std::int64_t currentVersion = 1;

    std::int64_t version = currentVersion; // read, and otherwise ignored
    QDateTime updatedAt;
    std::vector<RuleDefinition> rules;

    [[nodiscard]] JsonValue toJson() const;
    // All three keys required; time stamps ISO 8601 without fractions. Throws JsonDecodingError.
    [[nodiscard]] static RuleCatalog fromJson(const JsonValue& json);

    // The file text: pretty-printed, keys sorted, slashes escaped. Rules stand as given.
    [[nodiscard]] QByteArray fileText() const;
    // Throws JsonDecodingError for text that is not JSON or not a catalogue.
    [[nodiscard]] static RuleCatalog fromFileText(const QByteArray& text);

    friend bool operator==(const RuleCatalog&, const RuleCatalog&) = default;
};

} // namespace kestrow
