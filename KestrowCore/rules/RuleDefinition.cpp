#include "rules/RuleDefinition.h"

namespace kestrow {

namespace {

JsonValue stringArray(const QStringList& strings)
{
    JsonValue::Array array;
    array.reserve(static_cast<size_t>(strings.size()));
    for (const QString& text : strings)
        array.emplace_back(text);
    return array;
}

} // namespace

JsonValue RuleDefinition::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), id},
        {QStringLiteral("name"), name},
        {QStringLiteral("description"), description},
        {QStringLiteral("category"), category.rawValue()},
        {QStringLiteral("riskTier"), riskTier.rawValue()},
        {QStringLiteral("patterns"), stringArray(patterns)},
        {QStringLiteral("excludedPatterns"), stringArray(excludedPatterns)},
        {QStringLiteral("isRegenerable"), isRegenerable},
        {QStringLiteral("isBuiltIn"), isBuiltIn},
        {QStringLiteral("enabled"), enabled},
    });
    if (minAgeDays)
        json.insert(QStringLiteral("minAgeDays"), *minAgeDays);
    if (synthesizedBy)
        json.insert(QStringLiteral("synthesizedBy"), *synthesizedBy);
    if (createdAt)
        json.insert(QStringLiteral("createdAt"), JsonDecoder::encodeDate(*createdAt, dates));
    if (updatedAt)
        json.insert(QStringLiteral("updatedAt"), JsonDecoder::encodeDate(*updatedAt, dates));
    return json;
}

RuleDefinition RuleDefinition::fromJson(const JsonValue& json, DateEncoding dates)
{
    const JsonDecoder in(json, QStringLiteral("RuleDefinition"));
    return RuleDefinition{
        .id = in.string(QStringLiteral("id")),
        .name = in.string(QStringLiteral("name")),
        .description = in.string(QStringLiteral("description")),
        .category = StorageCategory::decode(in, QStringLiteral("category")),
        .riskTier = RiskTier::decode(in, QStringLiteral("riskTier")),
        .patterns = in.stringArray(QStringLiteral("patterns")),
        .excludedPatterns = in.stringArray(QStringLiteral("excludedPatterns")),
        .isRegenerable = in.boolean(QStringLiteral("isRegenerable")),
        .isBuiltIn = in.boolean(QStringLiteral("isBuiltIn")),
        .enabled = in.boolean(QStringLiteral("enabled")),
        .minAgeDays = in.optionalInteger(QStringLiteral("minAgeDays")),
        .synthesizedBy = in.optionalString(QStringLiteral("synthesizedBy")),
        .createdAt = in.optionalDate(QStringLiteral("createdAt"), dates),
        .updatedAt = in.optionalDate(QStringLiteral("updatedAt"), dates),
    };
}

} // namespace kestrow
