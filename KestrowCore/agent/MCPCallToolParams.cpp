#include "agent/MCPCallToolParams.h"

#include "support/JsonDecoder.h"

namespace kestrow {

MCPCallToolParams MCPCallToolParams::fromJson(const JSONValue& json)
{
    const JsonDecoder decoder(json, QStringLiteral("MCPCallToolParams"));
    MCPCallToolParams params{decoder.string(QStringLiteral("name")), {}};
    if (const JSONValue* arguments = decoder.optional(QStringLiteral("arguments"))) {
        if (!arguments->isObject())
            decoder.fail(QStringLiteral("arguments"), QStringLiteral("expected an object"));
        params.arguments = arguments->toObject();
    }
    return params;
}

} // namespace kestrow
