#include "agent/MCPServer.h"

#include "agent/ArgumentOverflowError.h"
#include "agent/MCPInitializeResult.h"
#include "agent/MCPToolsListResult.h"
#include "support/JsonDecoder.h"
#include "support/JsonWriter.h"

#include <cerrno>

namespace kestrow {

MCPServer::MCPServer(Options options, MCPTools tools)
    : m_inputFd(options.inputFd)
    , m_outputFd(options.outputFd)
    , m_systemCalls(options.systemCalls ? std::move(options.systemCalls) : SystemCalls::real())
    , m_tools(std::move(tools))
{
}

QByteArray MCPServer::readLineData()
{
    // Reads take what the input holds at the moment, so a request is served as soon as its
    // line is complete.
    constexpr qsizetype chunk = 65536;
    qsizetype newline = m_pending.indexOf('\n', m_served);
    while (newline < 0 && !m_inputEnded) {
        m_pending.remove(0, m_served);
        m_served = 0;
        const qsizetype searchFrom = m_pending.size();
        m_pending.resize(searchFrom + chunk);
        const ssize_t got = retryOnInterrupt(
            [&] { return m_systemCalls->read(m_inputFd, m_pending.data() + searchFrom, static_cast<size_t>(chunk)); });
        m_pending.resize(searchFrom + std::max<qsizetype>(got, 0));
        m_inputEnded = got <= 0;
        newline = m_pending.indexOf('\n', searchFrom);
    }
    const qsizetype end = newline < 0 ? m_pending.size() : newline;
    QByteArray line = m_pending.sliced(m_served, end - m_served);
    m_served = newline < 0 ? end : end + 1;
    line.removeIf([](char byte) { return byte == '\r'; });
    return line;
}

void MCPServer::run()
{
    for (QByteArray line = readLineData(); !line.isEmpty(); line = readLineData()) {
        std::optional<JSONRPCRequest> request;
        try {
            request = JSONRPCRequest::decode(line);
        } catch (const JsonDecodingError&) {
            sendError(std::nullopt, JSONRPCError::parseError());
            continue;
        }
        handleRequest(*request);
    }
}

void MCPServer::handleRequest(const JSONRPCRequest& request)
{
    const QString& method = request.method;
    if (method == QLatin1String("initialize")) {
        sendResult(request.id, MCPInitializeResult{.protocolVersion = QStringLiteral("2024-11-05"),
                                                   .capabilities = {.tools = {{QStringLiteral("listChanged"), true}}},
                                                   .serverInfo = {QStringLiteral("kestrow"), QStringLiteral("1.0.0")}}
                                   .toJson());
    } else if (method == QLatin1String("notifications/initialized")) {
        return;
    } else if (method == QLatin1String("ping")) {
        sendResult(request.id, JSONValue::Object{});
    } else if (method == QLatin1String("tools/list")) {
        sendResult(request.id, MCPToolsListResult{MCPTools::listTools()}.toJson());
    } else if (method == QLatin1String("tools/call")) {
        callTool(request);
    } else {
        sendError(request.id, JSONRPCError::methodNotFound());
    }
}

void MCPServer::callTool(const JSONRPCRequest& request)
{
    const JSONValue* name = request.params ? request.params->find(QStringLiteral("name")) : nullptr;
    if (!name || !name->isString()) {
        sendError(request.id, JSONRPCError::invalidParams());
        return;
    }
    const JSONValue* given = request.params->find(QStringLiteral("arguments"));
    const std::optional<JSONValue::Object> arguments =
        given && given->isObject() ? std::optional(given->toObject()) : std::nullopt;
    MCPCallToolResult result;
    try {
        result = m_tools.execute(name->toString(), arguments);
    } catch (const ArgumentOverflowError&) {
        throw;
    } catch (const KestrowError& error) {
        result = MCPCallToolResult::text(QStringLiteral("Tool execution failed: ") + error.description(), true);
    } catch (const std::exception& error) {
        result =
            MCPCallToolResult::text(QStringLiteral("Tool execution failed: ") + QString::fromUtf8(error.what()), true);
    }
    sendResult(request.id, result.toJson());
}

void MCPServer::sendResult(const std::optional<JSONRPCId>& id, const JSONValue& result)
{
    if (!id)
        return;
    // The typed result reaches the response as the JSON its text reads back as.
    JSONValue readBack;
    try {
        readBack = JsonDecoder::parse(JsonWriter::compact(result));
    } catch (const JsonDecodingError&) {
        sendError(id, JSONRPCError::internalError());
        return;
    }
    sendResponse({.id = id, .result = std::move(readBack)});
}

void MCPServer::sendError(const std::optional<JSONRPCId>& id, const JSONRPCError& error)
{
    sendResponse({.id = id, .error = error});
}

void MCPServer::sendResponse(const JSONRPCResponse& response)
{
    // The line and its newline in one write where the output takes it, so that a reader never
    // sees half a message.
    const QByteArray line = JsonWriter::compact(response.toJson()) + '\n';
    qsizetype written = 0;
    while (written < line.size()) {
        const ssize_t wrote = retryOnInterrupt([&] {
            return m_systemCalls->write(m_outputFd, line.constData() + written,
                                        static_cast<size_t>(line.size() - written));
        });
        if (wrote <= 0)
            return;
        written += wrote;
    }
}

} // namespace kestrow
