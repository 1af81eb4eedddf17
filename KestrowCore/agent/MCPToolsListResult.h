#pragma once

#include "agent/JSONValue.h"
#include "agent/MCPTool.h"

#include <vector>

namespace kestrow {

// The answer to "tools/list".
struct MCPToolsListResult {
    std::vector<MCPTool> tools;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
