#pragma once

#include "agent/JSONRPCError.h"
#include "agent/JSONRPCId.h"
#include "agent/JSONRPCRequest.h"
#include "agent/JSONRPCResponse.h"
#include "agent/MCPTools.h"
#include "platform/SystemCalls.h"

#include <QByteArray>

#include <memory>
#include <optional>

namespace kestrow {

// The agent server: JSON-RPC 2.0 over two byte streams, one message per line each way,
// speaking the Model Context Protocol. Requests are served one at a time, in order, each to its
// end before the next line is read; nothing is kept between them. Only JSON-RPC lines are
// written to the output.
class MCPServer {
public:
    struct Options {
        int inputFd = 0;
        int outputFd = 1;
        std::shared_ptr<const SystemCalls> systemCalls; // absent: the real ones
    };

    MCPServer(Options options, MCPTools tools);

    // Serves until the input ends or a blank line comes. No line stops it otherwise: one that
    // is no request is answered with a parse error. Throws only ArgumentOverflowError, for a
    // client's number that a tool cannot hold, after which the server cannot go on.
    void run();
    void handleRequest(const JSONRPCRequest& request);

private:
    // The next line without its newline and with every carriage return dropped; the last
    // line may lack its newline. Empty at the end of the input.
    [[nodiscard]] QByteArray readLineData();
    void callTool(const JSONRPCRequest& request);
    // Nothing for a notification. The result is read back through JSONValue first.
    void sendResult(const std::optional<JSONRPCId>& id, const JSONValue& result);
    void sendError(const std::optional<JSONRPCId>& id, const JSONRPCError& error);
    void sendResponse(const JSONRPCResponse& response);

    int m_inputFd;
    int m_outputFd;
    std::shared_ptr<const SystemCalls> m_systemCalls;
    MCPTools m_tools;
    QByteArray m_pending; // read from the input; served up to `m_served`
    qsizetype m_served = 0;
    bool m_inputEnded = false;
};

} // namespace kestrow
