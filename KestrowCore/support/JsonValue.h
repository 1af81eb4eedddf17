#pragma once

#include <QJsonValue>
#include <QString>

#include <cstdint>
#include <initializer_list>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

// A JSON value that keeps the key order it was built with, so that records can be written
// in field order, and that keeps integers apart from doubles, so that byte counts stay exact.
class JsonValue {
public:
    using Array = std::vector<JsonValue>;
    using Member = std::pair<QString, JsonValue>;
    using Object = std::vector<Member>;

    JsonValue() = default; // null
    JsonValue(std::nullptr_t) {}
    JsonValue(bool value)
        : m_value(value)
    {
    }
    JsonValue(int value)
        : m_value(std::int64_t{value})
    {
    }
    JsonValue(std::int64_t value)
        : m_value(value)
    {
    }
    JsonValue(std::uint64_t value)
        : m_value(static_cast<std::int64_t>(value))
    {
    }
    JsonValue(double value)
        : m_value(value)
    {
    }
    JsonValue(const char* value)
        : m_value(QString::fromUtf8(value))
    {
    }
    JsonValue(QString value)
        : m_value(std::move(value))
    {
    }
    JsonValue(Array value)
        : m_value(std::move(value))
    {
    }
    JsonValue(Object value)
        : m_value(std::move(value))
    {
    }

    [[nodiscard]] static JsonValue object(std::initializer_list<Member> members) { return Object(members); }
    [[nodiscard]] static JsonValue array(std::initializer_list<JsonValue> values) { return Array(values); }

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(m_value); }
    [[nodiscard]] bool isBool() const { return std::holds_alternative<bool>(m_value); }
    [[nodiscard]] bool isInteger() const { return std::holds_alternative<std::int64_t>(m_value); }
    [[nodiscard]] bool isDouble() const { return std::holds_alternative<double>(m_value); }
    [[nodiscard]] bool isNumber() const { return isInteger() || isDouble(); }
    [[nodiscard]] bool isString() const { return std::holds_alternative<QString>(m_value); }
    [[nodiscard]] bool isArray() const { return std::holds_alternative<Array>(m_value); }
    [[nodiscard]] bool isObject() const { return std::holds_alternative<Object>(m_value); }

    [[nodiscard]] bool toBool() const { return std::get<bool>(m_value); }
    [[nodiscard]] std::int64_t toInteger() const;
    [[nodiscard]] double toDouble() const;
    [[nodiscard]] const QString& toString() const { return std::get<QString>(m_value); }
    [[nodiscard]] const Array& toArray() const { return std::get<Array>(m_value); }
    [[nodiscard]] const Object& toObject() const { return std::get<Object>(m_value); }
    Array& asArray() { return std::get<Array>(m_value); }
    Object& asObject() { return std::get<Object>(m_value); }

    // Object helpers. `insert` appends (keeping order) or replaces an existing key in place.
    void insert(const QString& key, JsonValue value);
    [[nodiscard]] const JsonValue* find(const QString& key) const;

    // Conversion from Qt's reader; integral numbers that fit 64 bits become integers.
    [[nodiscard]] static JsonValue fromQt(const QJsonValue& value);

    friend bool operator==(const JsonValue&, const JsonValue&) = default;

private:
    std::variant<std::monostate, bool, std::int64_t, double, QString, Array, Object> m_value;
};

} // namespace kestrow
