#include "KestrowProcess.h"
#include "TestHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

using namespace kestrow::test;

namespace {

struct Served {
    int exitCode = -1;
    QList<QJsonObject> answers;
    QStringList lines;
    QString err;
};

Served serve(const TestHome& home, const QByteArray& input)
{
    const KestrowRun run = runKestrow({QStringLiteral("mcp"), QStringLiteral("--home"), home.path()}, input);
    Served served{run.exitCode, {}, run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts), run.err};
    EXPECT_TRUE(run.out.isEmpty() || run.out.endsWith(QLatin1Char('\n')));
    for (const QString& line : served.lines) {
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(line.toUtf8(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        served.answers.append(document.object());
    }
    return served;
}

QString toolText(const QJsonObject& answer)
{
    return answer[QStringLiteral("result")][QStringLiteral("content")][0][QStringLiteral("text")].toString();
}

bool toolFailed(const QJsonObject& answer)
{
    return answer[QStringLiteral("result")][QStringLiteral("isError")].toBool();
}

int errorCode(const QJsonObject& answer)
{
    return answer[QStringLiteral("error")][QStringLiteral("code")].toInt();
}

} // namespace

TEST(McpCommand, AnswersEachLineAsTheProtocolSays)
{
    TestHome home;
    const QByteArray input =
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\r\n"
        "{\"jsonrpc\":\"2.0\",\"id\":null,\"method\":\"ping\"}\n"
        "{\"jsonrpc\":\"2.0\",\"method\":\"ping\"}\n"
        "{\"jsonrpc\":\"1.0\",\"id\":\"a/b\",\"method\":\"ping\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":1.5,\"method\":\"ping\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":[1],\"method\":\"ping\"}\n"
        "ping\n"
        "{\"jsonrpc\":\"2.0\",\"id\":2}\n"
        "{\"jsonrpc\":\"2.0\",\"method\":\"foo\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":3,\"method\":\"Ping\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":4,\"method\":\"tools/call\",\"params\":{\"name\":5}}\n"
        "{\"jsonrpc\":\"2.0\",\"method\":\"tools/call\",\"params\":[]}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":6,\"method\":\"tools/call\",\"params\":{\"name\":\"clean_storage\","
        "\"arguments\":[1]}}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"tools/call\",\"params\":{\"name\":\"no\r_tool\"}}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":8,\"method\":\"tools/call\",\"params\":{\"name\":\"register_rule\","
        "\"arguments\":{\"id\":\"mine\",\"name\":\"Mine\",\"pattern\":\"~/Documents/**\",\"category\":\"x\","
        "\"risk_tier\":\"KEEP\"}}}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":9,\"method\":\"initialize\",\"params\":{\"protocolVersion\":\"1999-01-01\"}}\n"
        "{\"jsonrpc\":\"2.0\",\"method\":\"notifications/initialized\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":10,\"method\":\"tools/list\"}\n"
        "{\"jsonrpc\":\"2.0\",\"id\":11,\"method\":\"ping\"}";
    const Served served = serve(home, input);
    EXPECT_EQ(served.exitCode, 0);
    EXPECT_TRUE(served.err.isEmpty()) << served.err.toStdString();
    ASSERT_EQ(served.answers.size(), 16) << served.lines.join(QLatin1Char('\n')).toStdString();
    const QList<QJsonObject>& a = served.answers;

    EXPECT_EQ(served.lines[0], QStringLiteral(R"({"jsonrpc":"2.0","id":1,"result":{}})"));
    EXPECT_EQ(a[1][QStringLiteral("id")], QJsonValue(QStringLiteral("a/b")));
    EXPECT_TRUE(served.lines[1].contains(QStringLiteral(R"("a\/b")")));
    for (int parseFailure : {2, 3, 4, 5}) {
        EXPECT_EQ(errorCode(a[parseFailure]), -32700);
        EXPECT_EQ(a[parseFailure][QStringLiteral("error")][QStringLiteral("message")].toString(),
                  QStringLiteral("Parse error"));
        EXPECT_FALSE(a[parseFailure].contains(QStringLiteral("id")));
    }
    EXPECT_EQ(errorCode(a[6]), -32601);
    EXPECT_FALSE(a[6].contains(QStringLiteral("id")));
    EXPECT_EQ(errorCode(a[7]), -32601);
    EXPECT_EQ(a[7][QStringLiteral("id")].toInt(), 3);
    EXPECT_EQ(errorCode(a[8]), -32602);
    EXPECT_EQ(a[8][QStringLiteral("id")].toInt(), 4);
    EXPECT_EQ(errorCode(a[9]), -32602);
    EXPECT_FALSE(a[9].contains(QStringLiteral("id")));
    EXPECT_EQ(toolText(a[10]), QStringLiteral("No target paths or categories matched for cleanup."));
    EXPECT_FALSE(toolFailed(a[10]));
    EXPECT_EQ(toolText(a[11]), QStringLiteral("Unknown tool: no_tool"));
    EXPECT_TRUE(toolFailed(a[11]));
    EXPECT_TRUE(toolText(a[12]).startsWith(QStringLiteral("Tool execution failed: Sandbox Violation: Path ")))
        << toolText(a[12]).toStdString();
    EXPECT_TRUE(toolFailed(a[12]));

    EXPECT_EQ(a[13][QStringLiteral("result")].toObject(),
              QJsonDocument::fromJson(R"({"protocolVersion":"2024-11-05","capabilities":{"tools":{"listChanged":true}},
                  "serverInfo":{"name":"kestrow","version":"1.0.0"}})")
                  .object());
    const QJsonArray tools = a[14][QStringLiteral("result")][QStringLiteral("tools")].toArray();
    QStringList names;
    for (const QJsonValue& tool : tools)
        names.append(tool[QStringLiteral("name")].toString());
    EXPECT_EQ(names, QStringList({QStringLiteral("scan_storage"), QStringLiteral("clean_storage"),
                                  QStringLiteral("inspect_directory"), QStringLiteral("list_apps"),
                                  QStringLiteral("uninstall_app"), QStringLiteral("get_system_vitals"),
                                  QStringLiteral("list_rules"), QStringLiteral("register_rule"),
                                  QStringLiteral("inspect_anomalies")}));
    EXPECT_EQ(tools[2][QStringLiteral("inputSchema")].toObject(),
              QJsonDocument::fromJson(R"json({"type":"object","properties":{
                  "path":{"type":"string","description":"Absolute path of the directory to inspect"},
                  "depth":{"type":"integer","description":"Maximum search depth (default: 3)"}},
                  "required":["path"]})json")
                  .object());
    EXPECT_EQ(tools[0][QStringLiteral("inputSchema")][QStringLiteral("properties")][QStringLiteral("categories")]
                   [QStringLiteral("items")][QStringLiteral("type")],
              QJsonValue(QStringLiteral("string")));
    EXPECT_FALSE(tools[6][QStringLiteral("inputSchema")].toObject().contains(QStringLiteral("required")));
    EXPECT_EQ(served.lines[15], QStringLiteral(R"({"jsonrpc":"2.0","id":11,"result":{}})"));
}

TEST(McpCommand, ABlankLineEndsTheServerAndALastLineWithoutNewlineIsServed)
{
    TestHome home;
    const Served ended = serve(home, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n\r\n"
                                     "{\"jsonrpc\":\"2.0\",\"id\":2,\"method\":\"ping\"}\n");
    EXPECT_EQ(ended.exitCode, 0);
    ASSERT_EQ(ended.answers.size(), 1);
    EXPECT_EQ(ended.answers[0][QStringLiteral("id")].toInt(), 1);

    const Served last = serve(home, "{\"jsonrpc\":\"2.0\",\"id\":\"x\",\"method\":\"ping\"}");
    ASSERT_EQ(last.answers.size(), 1);
    EXPECT_EQ(last.answers[0][QStringLiteral("id")], QJsonValue(QStringLiteral("x")));
}

TEST(McpCommand, ANumberNoIntegerHoldsEndsTheServerWithAMessageOnStandardError)
{
    TestHome home;
    const Served served = serve(
        home, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n"
              "{\"jsonrpc\":\"2.0\",\"id\":2,\"method\":\"tools/call\",\"params\":{\"name\":\"inspect_anomalies\","
              "\"arguments\":{\"min_size_mb\":1e300}}}\n"
              "{\"jsonrpc\":\"2.0\",\"id\":3,\"method\":\"ping\"}\n");
    EXPECT_EQ(served.exitCode, 1);
    ASSERT_EQ(served.answers.size(), 1);
    EXPECT_TRUE(served.err.contains(QStringLiteral("'min_size_mb' is too large for a 64-bit integer")))
        << served.err.toStdString();
}

TEST(McpCommand, AnswersARequestWhileTheInputStaysOpen)
{
    TestHome home;
    QProcess server;
    server.start(QStringLiteral(KESTROW_BINARY), {QStringLiteral("mcp"), QStringLiteral("--home"), home.path()});
    ASSERT_TRUE(server.waitForStarted());
    server.write("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n");
    ASSERT_TRUE(server.waitForReadyRead(30000));
    while (!server.canReadLine() && server.waitForReadyRead(30000)) {
    }
    EXPECT_EQ(server.readLine(), QByteArray("{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}\n"));
    EXPECT_EQ(server.state(), QProcess::Running);
    server.closeWriteChannel();
    EXPECT_TRUE(server.waitForFinished(30000));
    EXPECT_EQ(server.exitCode(), 0);
}
