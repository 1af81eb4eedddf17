#include "agent/JSONRPCResponse.h"

namespace kestrow {

JSONValue JSONRPCResponse::toJson() const
{
    JSONValue json = JSONValue::object({{QStringLiteral("jsonrpc"), jsonrpc}});
    if (id)
        json.insert(QStringLiteral("id"), id->toJson());
    if (result)
        json.insert(QStringLiteral("result"), *result);
    if (error)
        json.insert(QStringLiteral("error"), error->toJson());
    return json;
}

} // namespace kestrow
