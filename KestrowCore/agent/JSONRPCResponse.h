#pragma once

#include "agent/JSONRPCError.h"
#include "agent/JSONRPCId.h"
#include "agent/JSONValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// One message to the client: a result or an error. Absent members are left out of the text,
// so an answer without an id has no `id` member at all.
struct JSONRPCResponse {
    QString jsonrpc = QStringLiteral("2.0");
    std::optional<JSONRPCId> id;
    std::optional<JSONValue> result;
    std::optional<JSONRPCError> error;

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
