#include "agent/JSONRPCRequest.h"

#include "support/JsonDecoder.h"

namespace kestrow {

JSONRPCRequest JSONRPCRequest::decode(const QByteArray& line)
{
    return fromJson(JsonDecoder::parse(line));
}

JSONRPCRequest JSONRPCRequest::fromJson(const JSONValue& json)
{
    const JsonDecoder decoder(json, QStringLiteral("JSONRPCRequest"));
    JSONRPCRequest request{.jsonrpc = decoder.string(QStringLiteral("jsonrpc")),
                           .id = {},
                           .method = decoder.string(QStringLiteral("method")),
                           .params = {}};
    if (const JSONValue* id = decoder.optional(QStringLiteral("id")))
        request.id = JSONRPCId::decode(*id);
    if (const JSONValue* params = decoder.optional(QStringLiteral("params")))
        request.params = *params;
    return request;
}

} // namespace kestrow
