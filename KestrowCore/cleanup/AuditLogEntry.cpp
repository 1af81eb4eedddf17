#include "cleanup/AuditLogEntry.h"

#include "support/JsonDecoder.h"

namespace kestrow {

JsonValue AuditLogEntry::toJson() const
{
    JsonValue::Array pathArray;
    for (const QString& path : paths)
        pathArray.emplace_back(path);
    JsonValue json = JsonValue::object({
        {QStringLiteral("timestamp"), timestamp},
        {QStringLiteral("operationId"), operationId},
        {QStringLiteral("operationType"), operationType.text()},
        {QStringLiteral("itemsCount"), itemsCount},
        {QStringLiteral("bytesFreed"), bytesFreed},
        {QStringLiteral("paths"), pathArray},
        {QStringLiteral("client"), client},
    });
    if (durationMs)
        json.insert(QStringLiteral("durationMs"), *durationMs);
    json.insert(QStringLiteral("previousHash"), previousHash);
    json.insert(QStringLiteral("rollingHash"), rollingHash);
    return json;
}

AuditLogEntry AuditLogEntry::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("AuditLogEntry"));
    const QString typeText = in.string(QStringLiteral("operationType"));
    const auto type = AuditOperationType::fromText(typeText);
    if (!type)
        in.fail(QStringLiteral("operationType"), QStringLiteral("unknown operation type ") + typeText);
    std::optional<double> duration;
    if (in.optional(QStringLiteral("durationMs")))
        duration = in.number(QStringLiteral("durationMs"));
    return AuditLogEntry{
        .timestamp = in.string(QStringLiteral("timestamp")),
        .operationId = in.string(QStringLiteral("operationId")),
        .operationType = *type,
        .itemsCount = in.integer(QStringLiteral("itemsCount")),
        .bytesFreed = in.integer(QStringLiteral("bytesFreed")),
        .paths = in.stringArray(QStringLiteral("paths")),
        .client = in.string(QStringLiteral("client")),
        .durationMs = duration,
        .previousHash = in.string(QStringLiteral("previousHash")),
        .rollingHash = in.string(QStringLiteral("rollingHash")),
    };
}

} // namespace kestrow
