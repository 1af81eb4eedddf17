#pragma once

#include "agent/JSONRPCId.h"
#include "agent/JSONValue.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrow {

// One message from the client. Without an id (or with a null one) it is a notification.
struct JSONRPCRequest {
    QString jsonrpc; // required, its value never tested
    std::optional<JSONRPCId> id;
    QString method;
    std::optional<JSONValue> params; // a null counts as absent

    // Throws JsonDecodingError when the line is not JSON, not an object, lacks a string
    // `jsonrpc` or `method`, or has an id of another form.
    [[nodiscard]] static JSONRPCRequest decode(const QByteArray& line);
    [[nodiscard]] static JSONRPCRequest fromJson(const JSONValue& json);
};

} // namespace kestrow
