#pragma once

#include "agent/JSONValue.h"
#include "agent/MCPImplementationInfo.h"
#include "agent/MCPServerCapabilities.h"

#include <QString>

namespace kestrow {

// The answer to "initialize".
struct MCPInitializeResult {
    QString protocolVersion;
    MCPServerCapabilities capabilities;
    MCPImplementationInfo serverInfo;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
