#include "agent/JSONRPCError.h"

namespace kestrow {

JSONValue JSONRPCError::toJson() const
{
    JSONValue json = JSONValue::object({{QStringLiteral("code"), code}, {QStringLiteral("message"), message}});
    if (data)
        json.insert(QStringLiteral("data"), *data);
    return json;
}

} // namespace kestrow
