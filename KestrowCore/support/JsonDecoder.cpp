#include "support/JsonDecoder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <cmath>

namespace kestrow {

JsonDecoder::JsonDecoder(const JsonValue& value, QString context)
    : m_value(value)
    , m_context(std::move(context))
{
    if (!m_value.isObject())
        throw JsonDecodingError(QStringLiteral("Expected an object for %1.").arg(m_context));
}

namespace {

// Where a control character stands unescaped inside a string, which JSON forbids and Qt's
// reader lets through; -1 when none does.
qsizetype unescapedControlCharacter(const QByteArray& text)
{
    bool inString = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (!inString) {
            inString = byte == '"';
        } else if (byte == '\\') {
            ++i;
        } else if (byte == '"') {
            inString = false;
        } else if (byte < 0x20) {
            return i;
        }
    }
    return -1;
}

} // namespace

JsonValue JsonDecoder::parse(const QByteArray& text)
{
    if (const qsizetype at = unescapedControlCharacter(text); at >= 0)
        throw JsonDecodingError(
            QStringLiteral("The data isn't valid JSON: unescaped control character in a string at offset %1.").arg(at));
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw JsonDecodingError(
            QStringLiteral("The data isn't valid JSON: %1 at offset %2.").arg(error.errorString()).arg(error.offset));
    if (document.isArray())
        return JsonValue::fromQt(QJsonValue(document.array()));
    return JsonValue::fromQt(QJsonValue(document.object()));
}

void JsonDecoder::fail(const QString& key, const QString& problem) const
{
    throw JsonDecodingError(QStringLiteral("%1 of %2: %3.").arg(key, m_context, problem));
}

const JsonValue& JsonDecoder::required(const QString& key) const
{
    const JsonValue* found = m_value.find(key);
    if (!found || found->isNull())
        fail(key, QStringLiteral("the key is missing"));
    return *found;
}

const JsonValue* JsonDecoder::optional(const QString& key) const
{
    const JsonValue* found = m_value.find(key);
    return found && !found->isNull() ? found : nullptr;
}

QString JsonDecoder::string(const QString& key) const
{
    const JsonValue& value = required(key);
    if (!value.isString())
        fail(key, QStringLiteral("expected a string"));
    return value.toString();
}

std::int64_t JsonDecoder::integer(const QString& key) const
{
    const JsonValue& value = required(key);
    if (!value.isInteger())
        fail(key, QStringLiteral("expected an integer"));
    return value.toInteger();
}

double JsonDecoder::number(const QString& key) const
{
    const JsonValue& value = required(key);
    if (!value.isNumber())
        fail(key, QStringLiteral("expected a number"));
    return value.toDouble();
}

bool JsonDecoder::boolean(const QString& key) const
{
    const JsonValue& value = required(key);
    if (!value.isBool())
        fail(key, QStringLiteral("expected a boolean"));
    return value.toBool();
}

const JsonValue::Array& JsonDecoder::array(const QString& key) const
{
    const JsonValue& value = required(key);
    if (!value.isArray())
        fail(key, QStringLiteral("expected an array"));
    return value.toArray();
}

QStringList JsonDecoder::stringArray(const QString& key) const
{
    QStringList result;
    for (const JsonValue& element : array(key)) {
        if (!element.isString())
            fail(key, QStringLiteral("expected an array of strings"));
        result.append(element.toString());
    }
    return result;
}

QDateTime JsonDecoder::date(const QString& key, DateEncoding encoding) const
{
    return decodeDate(required(key), key, encoding);
}

std::optional<QString> JsonDecoder::optionalString(const QString& key) const
{
    if (!optional(key))
        return std::nullopt;
    return string(key);
}

std::optional<std::int64_t> JsonDecoder::optionalInteger(const QString& key) const
{
    if (!optional(key))
        return std::nullopt;
    return integer(key);
}

std::optional<QDateTime> JsonDecoder::optionalDate(const QString& key, DateEncoding encoding) const
{
    const JsonValue* value = optional(key);
    if (!value)
        return std::nullopt;
    return decodeDate(*value, key, encoding);
}

JsonValue JsonDecoder::encodeDate(const QDateTime& moment, DateEncoding encoding)
{
    if (encoding == DateEncoding::iso8601)
        return TimeStamp::iso8601(moment);
    return TimeStamp::secondsSinceReferenceDate(moment);
}

QDateTime JsonDecoder::decodeDate(const JsonValue& value, const QString& key, DateEncoding encoding) const
{
    if (encoding == DateEncoding::iso8601) {
        if (!value.isString())
            fail(key, QStringLiteral("expected an ISO 8601 date string"));
        const auto moment = TimeStamp::parseIso8601(value.toString());
        if (!moment)
            fail(key, QStringLiteral("Expected date string to be ISO8601-formatted."));
        return *moment;
    }
    if (!value.isNumber())
        fail(key, QStringLiteral("expected a number of seconds"));
    return TimeStamp::fromSecondsSinceReferenceDate(value.toDouble());
}

} // namespace kestrow
