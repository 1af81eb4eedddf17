#include "cleanup/AuditVerificationResult.h"

namespace kestrow {

JsonValue AuditVerificationResult::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("isValid"), isValid},
        {QStringLiteral("totalEntries"), totalEntries},
    });
    if (tamperedLineIndex)
        json.insert(QStringLiteral("tamperedLineIndex"), *tamperedLineIndex);
    if (failureReason)
        json.insert(QStringLiteral("failureReason"), *failureReason);
    return json;
}

} // namespace kestrow
