#include "policy/PathCheckOutcome.h"

namespace kestrow {

JsonValue PathCheckOutcome::toJson() const
{
    JsonValue json = JsonValue::object({{QStringLiteral("path"), path}, {QStringLiteral("allowed"), !error}});
    if (error)
        json.insert(QStringLiteral("error"), error->description());
    json.insert(QStringLiteral("riskTier"), classification.riskTier.rawValue());
    json.insert(QStringLiteral("confidence"), classification.confidence);
    json.insert(QStringLiteral("reason"), classification.reason);
    if (classification.matchedRuleId)
        json.insert(QStringLiteral("matchedRuleId"), *classification.matchedRuleId);
    json.insert(QStringLiteral("hasCacheDirTag"), classification.hasCacheDirTag);
    return json;
}

} // namespace kestrow
