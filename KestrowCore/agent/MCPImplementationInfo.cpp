#include "agent/MCPImplementationInfo.h"

#include "support/JsonDecoder.h"

namespace kestrow {

JSONValue MCPImplementationInfo::toJson() const
{
    return JSONValue::object({{QStringLiteral("name"), name}, {QStringLiteral("version"), version}});
}

MCPImplementationInfo MCPImplementationInfo::fromJson(const JSONValue& json)
{
    const JsonDecoder decoder(json, QStringLiteral("MCPImplementationInfo"));
    return {decoder.string(QStringLiteral("name")), decoder.string(QStringLiteral("version"))};
}

} // namespace kestrow
