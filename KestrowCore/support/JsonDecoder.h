#pragma once

#include "support/JsonValue.h"
#include "support/KestrowError.h"
#include "support/TimeStamp.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>

namespace kestrow {

// How a document writes its time stamps: ISO 8601 text, or seconds since 2001-01-01.
enum class DateEncoding { iso8601, secondsSinceReferenceDate };

class JsonDecodingError : public KestrowError {
public:
    explicit JsonDecodingError(QString detail)
        : m_detail(std::move(detail))
    {
    }
    [[nodiscard]] QString description() const override { return m_detail; }

private:
    QString m_detail;
};

// Strict reading of one JSON object: a required key that is missing or of the wrong type
// throws JsonDecodingError naming the key; optional keys may be absent (or null).
class JsonDecoder {
public:
    JsonDecoder(const JsonValue& value, QString context);

    [[nodiscard]] static JsonValue parse(const QByteArray& text); // throws JsonDecodingError

    [[nodiscard]] const JsonValue& required(const QString& key) const;
    [[nodiscard]] const JsonValue* optional(const QString& key) const;

    [[nodiscard]] QString string(const QString& key) const;
    [[nodiscard]] std::int64_t integer(const QString& key) const;
    [[nodiscard]] double number(const QString& key) const;
    [[nodiscard]] bool boolean(const QString& key) const;
    [[nodiscard]] const JsonValue::Array& array(const QString& key) const;
    [[nodiscard]] QStringList stringArray(const QString& key) const;
    [[nodiscard]] QDateTime date(const QString& key, DateEncoding encoding) const;

    [[nodiscard]] std::optional<QString> optionalString(const QString& key) const;
    [[nodiscard]] std::optional<std::int64_t> optionalInteger(const QString& key) const;
    [[nodiscard]] std::optional<QDateTime> optionalDate(const QString& key, DateEncoding encoding) const;

    [[nodiscard]] static JsonValue encodeDate(const QDateTime& moment, DateEncoding encoding);
    [[nodiscard]] QDateTime decodeDate(const JsonValue& value, const QString& key, DateEncoding encoding) const;
    [[noreturn]] void fail(const QString& key, const QString& problem) const;

private:
    const JsonValue& m_value;
    QString m_context;
};

} // namespace kestrow
