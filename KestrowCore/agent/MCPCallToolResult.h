#pragma once

#include "agent/JSONValue.h"
#include "agent/MCPToolContent.h"

#include <QString>

#include <vector>

namespace kestrow {

// The answer to "tools/call", a failed tool's included.
struct MCPCallToolResult {
    std::vector<MCPToolContent> content;
    bool isError = false;

    // One text item.
    [[nodiscard]] static MCPCallToolResult text(const QString& text, bool isError);

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
