#include "agent/MCPInitializeParams.h"

#include "support/JsonDecoder.h"

namespace kestrow {

MCPInitializeParams MCPInitializeParams::fromJson(const JSONValue& json)
{
    const JsonDecoder decoder(json, QStringLiteral("MCPInitializeParams"));
    MCPInitializeParams params{decoder.string(QStringLiteral("protocolVersion")), {}, {}};
    if (const JSONValue* capabilities = decoder.optional(QStringLiteral("capabilities")))
        params.capabilities = *capabilities;
    if (const JSONValue* clientInfo = decoder.optional(QStringLiteral("clientInfo")))
        params.clientInfo = MCPImplementationInfo::fromJson(*clientInfo);
    return params;
}

} // namespace kestrow
