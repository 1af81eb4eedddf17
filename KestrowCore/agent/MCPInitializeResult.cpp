#include "agent/MCPInitializeResult.h"

namespace kestrow {

JSONValue MCPInitializeResult::toJson() const
{
    return JSONValue::object({{QStringLiteral("protocolVersion"), protocolVersion},
                              {QStringLiteral("capabilities"), capabilities.toJson()},
                              {QStringLiteral("serverInfo"), serverInfo.toJson()}});
}

} // namespace kestrow
