#include "support/JsonValue.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariant>

#include <cmath>

namespace kestrow {

std::int64_t JsonValue::toInteger() const
{
    if (const auto* d = std::get_if<double>(&m_value))
        return static_cast<std::int64_t>(*d);
    return std::get<std::int64_t>(m_value);
}

double JsonValue::toDouble() const
{
    if (const auto* i = std::get_if<std::int64_t>(&m_value))
        return static_cast<double>(*i);
    return std::get<double>(m_value);
}

void JsonValue::insert(const QString& key, JsonValue value)
{
    if (!isObject())
        m_value = Object{};
    auto& members = asObject();
    for (auto& member : members) {
        if (member.first == key) {
            member.second = std::move(value);
            return;
        }
    }
    members.emplace_back(key, std::move(value));
}

const JsonValue* JsonValue::find(const QString& key) const
{
    if (!isObject())
        return nullptr;
    for (const auto& member : toObject())
        if (member.first == key)
            return &member.second;
    return nullptr;
}

JsonValue JsonValue::fromQt(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::Double: {
        // Integral numbers come back as integers, exactly, so that byte counts survive: the
        // reader keeps every integer literal of 64 bits as one, and a double of integral value
        // in range ("1.0", "1e3") converts without loss.
        if (value.toVariant().typeId() == QMetaType::LongLong)
            return static_cast<std::int64_t>(value.toInteger());
        const double d = value.toDouble();
        constexpr double twoTo63 = 9223372036854775808.0;
        if (std::trunc(d) == d && d >= -twoTo63 && d < twoTo63)
            return static_cast<std::int64_t>(d);
        return d;
    }
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        Array array;
        const auto source = value.toArray();
        array.reserve(static_cast<size_t>(source.size()));
        for (const auto& element : source)
            array.push_back(fromQt(element));
        return array;
    }
    case QJsonValue::Object: {
        Object object;
        const auto source = value.toObject();
        for (auto it = source.begin(); it != source.end(); ++it)
            object.emplace_back(it.key(), fromQt(it.value()));
        return object;
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

} // namespace kestrow
