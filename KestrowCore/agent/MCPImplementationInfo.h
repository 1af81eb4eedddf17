#pragma once

#include "agent/JSONValue.h"

#include <QString>

namespace kestrow {

// The name and version a client or the server gives of itself.
struct MCPImplementationInfo {
    QString name;
    QString version;

    [[nodiscard]] JSONValue toJson() const;
    [[nodiscard]] static MCPImplementationInfo fromJson(const JSONValue& json); // throws JsonDecodingError
};

} // namespace kestrow
