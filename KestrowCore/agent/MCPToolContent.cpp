#include "agent/MCPToolContent.h"

namespace kestrow {

JSONValue MCPToolContent::toJson() const
{
    return JSONValue::object({{QStringLiteral("type"), type}, {QStringLiteral("text"), text}});
}

} // namespace kestrow
