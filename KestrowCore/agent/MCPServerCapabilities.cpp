#include "agent/MCPServerCapabilities.h"

namespace kestrow {

JSONValue MCPServerCapabilities::toJson() const
{
    JSONValue::Object flags;
    for (const auto& [name, on] : tools)
        flags.emplace_back(name, on);
    return JSONValue::object({{QStringLiteral("tools"), std::move(flags)}});
}

} // namespace kestrow
