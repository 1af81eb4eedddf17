#pragma once

#include "agent/JSONValue.h"
#include "storage/StorageCategory.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace kestrow {

// A tool's arguments as the tools read them: a key that is absent or holds a value of another
// JSON type counts as absent, never as an error.
class ToolArguments {
public:
    explicit ToolArguments(std::optional<JSONValue::Object> arguments);

    [[nodiscard]] std::optional<QString> string(const QString& key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    [[nodiscard]] std::optional<double> number(const QString& key) const;
    // The string elements of an array, in order; the others are dropped.
    [[nodiscard]] QStringList strings(const QString& key) const;
    // The categories the string elements of an array name; names of no category are dropped.
    [[nodiscard]] CategorySet categories(const QString& key) const;
    // The number truncated toward zero. Throws ArgumentOverflowError when that is no 64-bit
    // integer.
    [[nodiscard]] std::optional<std::int64_t> integer(const QString& key) const;
    // A number of megabytes (of 1024 x 1024 bytes) in bytes, truncated as `integer`.
    [[nodiscard]] std::optional<std::int64_t> megabytesInBytes(const QString& key) const;

private:
    [[nodiscard]] const JSONValue* value(const QString& key) const;
    [[nodiscard]] static std::int64_t truncated(double value, const QString& key);

    std::optional<JSONValue::Object> m_arguments;
};

} // namespace kestrow
