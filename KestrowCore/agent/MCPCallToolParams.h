#pragma once

#include "agent/JSONValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// What a client sends with "tools/call". The server reads these straight from the request's
// params, more leniently: arguments that are not an object count as none there.
struct MCPCallToolParams {
    QString name;
    std::optional<JSONValue::Object> arguments;

    [[nodiscard]] static MCPCallToolParams fromJson(const JSONValue& json); // throws JsonDecodingError
};

} // namespace kestrow
