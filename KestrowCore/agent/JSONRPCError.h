#pragma once

#include "agent/JSONValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The error member of a response. Only faults of the protocol are told this way; a tool that
// fails answers with a result.
struct JSONRPCError {
    int code = 0;
    QString message;
    std::optional<JSONValue> data;

    // A line that does not decode as a request.
    [[nodiscard]] static JSONRPCError parseError() { return {-32700, QStringLiteral("Parse error"), {}}; }
    [[nodiscard]] static JSONRPCError methodNotFound() { return {-32601, QStringLiteral("Method not found"), {}}; }
    // "tools/call" without an object of params holding a string "name".
    [[nodiscard]] static JSONRPCError invalidParams() { return {-32602, QStringLiteral("Invalid params"), {}}; }
    // A result that cannot be encoded or read back.
    [[nodiscard]] static JSONRPCError internalError() { return {-32603, QStringLiteral("Internal error"), {}}; }

    [[nodiscard]] JSONValue toJson() const;
};

} // namespace kestrow
