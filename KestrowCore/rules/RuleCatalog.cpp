#include "rules/RuleCatalog.h"

#include "support/JsonWriter.h"

namespace kestrow {

JsonValue RuleCatalog::toJson() const
{
    JsonValue::Array array;
    array.reserve(rules.size());
    for (const RuleDefinition& rule : rules)
        array.push_back(rule.toJson(DateEncoding::iso8601));
    return JsonValue::object({
        {QStringLiteral("version"), version},
        {QStringLiteral("updatedAt"), JsonDecoder::encodeDate(updatedAt, DateEncoding::iso8601)},
        {QStringLiteral("rules"), std::move(array)},
    });
}

RuleCatalog RuleCatalog::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("RuleCatalog"));
    RuleCatalog catalog{
        .version = in.integer(QStringLiteral("version")),
        .updatedAt = in.date(QStringLiteral("updatedAt"), DateEncoding::iso8601),
        .rules = {},
    };
    for (const JsonValue& rule : in.array(QStringLiteral("rules")))
        catalog.rules.push_back(RuleDefinition::fromJson(rule, DateEncoding::iso8601));
    return catalog;
}

QByteArray RuleCatalog::fileText() const
{
    return JsonWriter::prettySorted(toJson());
}

RuleCatalog RuleCatalog::fromFileText(const QByteArray& text)
{
    return fromJson(JsonDecoder::parse(text));
}

} // namespace kestrow
