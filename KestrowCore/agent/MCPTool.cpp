#include "agent/MCPTool.h"

namespace kestrow {

JSONValue MCPTool::toJson() const
{
    return JSONValue::object({{QStringLiteral("name"), name},
                              {QStringLiteral("description"), description},
                              {QStringLiteral("inputSchema"), inputSchema}});
}

} // namespace kestrow
