#pragma once

#include "agent/JSONValue.h"

#include <QHashFunctions>
#include <QString>

#include <cstdint>
#include <variant>

namespace kestrow {

// The id of a request: a string or a signed 64-bit integer, echoed in the same form.
class JSONRPCId {
public:
    explicit JSONRPCId(std::int64_t value)
        : m_value(value)
    {
    }
    explicit JSONRPCId(QString value)
        : m_value(std::move(value))
    {
    }

    // An integer first (a number of integral value that fits 64 bits), then a string. Throws
    // JsonDecodingError "Expected String or Int id" for anything else, 1.5 included.
    [[nodiscard]] static JSONRPCId decode(const JSONValue& value);
    [[nodiscard]] JSONValue toJson() const;

    friend bool operator==(const JSONRPCId&, const JSONRPCId&) = default;
    friend size_t qHash(const JSONRPCId& id, size_t seed = 0)
    {
        if (const auto* text = std::get_if<QString>(&id.m_value))
            return qHash(*text, seed);
        return qHash(static_cast<qint64>(std::get<std::int64_t>(id.m_value)), seed);
    }

private:
    std::variant<QString, std::int64_t> m_value;
};

} // namespace kestrow
