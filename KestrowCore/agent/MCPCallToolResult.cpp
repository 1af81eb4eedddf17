#include "agent/MCPCallToolResult.h"

namespace kestrow {

MCPCallToolResult MCPCallToolResult::text(const QString& text, bool isError)
{
    return {{{QStringLiteral("text"), text}}, isError};
}

JSONValue MCPCallToolResult::toJson() const
{
    JSONValue::Array items;
    for (const MCPToolContent& item : content)
        items.push_back(item.toJson());
    return JSONValue::object({{QStringLiteral("content"), std::move(items)}, {QStringLiteral("isError"), isError}});
}

} // namespace kestrow
