#include "agent/MCPToolsListResult.h"

namespace kestrow {

JSONValue MCPToolsListResult::toJson() const
{
    JSONValue::Array array;
    for (const MCPTool& tool : tools)
        array.push_back(tool.toJson());
    return JSONValue::object({{QStringLiteral("tools"), std::move(array)}});
}

} // namespace kestrow
