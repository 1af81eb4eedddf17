#pragma once

#include "agent/JSONValue.h"
#include "agent/MCPImplementationInfo.h"

#include <QString>

#include <optional>

namespace kestrow {

// What a client sends with "initialize". The server itself reads none of it.
struct MCPInitializeParams {
    QString protocolVersion;
    std::optional<JSONValue> capabilities;
    std::optional<MCPImplementationInfo> clientInfo;

    [[nodiscard]] static MCPInitializeParams fromJson(const JSONValue& json); // throws JsonDecodingError
};

} // namespace kestrow
