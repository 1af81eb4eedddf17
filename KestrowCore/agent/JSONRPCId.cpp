#include "agent/JSONRPCId.h"

#include "support/JsonDecoder.h"

namespace kestrow {

JSONRPCId JSONRPCId::decode(const JSONValue& value)
{
    if (value.isInteger())
        return JSONRPCId(value.toInteger());
    if (value.isString())
        return JSONRPCId(value.toString());
    throw JsonDecodingError(QStringLiteral("Expected String or Int id"));
}

JSONValue JSONRPCId::toJson() const
{
    if (const auto* text = std::get_if<QString>(&m_value))
        return *text;
    return std::get<std::int64_t>(m_value);
}

} // namespace kestrow
