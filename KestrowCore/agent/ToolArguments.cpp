#include "agent/ToolArguments.h"

#include "agent/ArgumentOverflowError.h"

#include <cmath>

namespace kestrow {

ToolArguments::ToolArguments(std::optional<JSONValue::Object> arguments)
    : m_arguments(std::move(arguments))
{
}

const JSONValue* ToolArguments::value(const QString& key) const
{
    if (!m_arguments)
        return nullptr;
    for (const JSONValue::Member& member : *m_arguments)
        if (member.first == key)
            return &member.second;
    return nullptr;
}

std::optional<QString> ToolArguments::string(const QString& key) const
{
    const JSONValue* found = value(key);
    return found && found->isString() ? std::optional(found->toString()) : std::nullopt;
}

std::optional<bool> ToolArguments::boolean(const QString& key) const
{
    const JSONValue* found = value(key);
    return found && found->isBool() ? std::optional(found->toBool()) : std::nullopt;
}

std::optional<double> ToolArguments::number(const QString& key) const
{
    const JSONValue* found = value(key);
    return found && found->isNumber() ? std::optional(found->toDouble()) : std::nullopt;
}

QStringList ToolArguments::strings(const QString& key) const
{
    QStringList texts;
    const JSONValue* found = value(key);
    if (!found || !found->isArray())
        return texts;
    for (const JSONValue& element : found->toArray())
        if (element.isString())
            texts.append(element.toString());
    return texts;
}

CategorySet ToolArguments::categories(const QString& key) const
{
    CategorySet categories;
    for (const QString& name : strings(key))
        if (const std::optional<StorageCategory> category = StorageCategory::parse(name))
            categories.insert(*category);
    return categories;
}

std::int64_t ToolArguments::truncated(double value, const QString& key)
{
    // The bounds of a 64-bit integer, both exact as doubles; NaN fails both tests.
    constexpr double twoTo63 = 9223372036854775808.0;
    if (!(value >= -twoTo63 && value < twoTo63))
        throw ArgumentOverflowError(key, value);
    return static_cast<std::int64_t>(value);
}

std::optional<std::int64_t> ToolArguments::integer(const QString& key) const
{
    const std::optional<double> given = number(key);
    return given ? std::optional(truncated(*given, key)) : std::nullopt;
}

std::optional<std::int64_t> ToolArguments::megabytesInBytes(const QString& key) const
{
    const std::optional<double> given = number(key);
    return given ? std::optional(truncated(*given * 1024.0 * 1024.0, key)) : std::nullopt;
}

} // namespace kestrow
