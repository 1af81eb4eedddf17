#pragma once

#include "agent/JSONValue.h"

#include <QString>

#include <map>

namespace kestrow {

// What the server offers: only tools.
struct MCPServerCapabilities {
    std::map<QString, bool> tools;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
