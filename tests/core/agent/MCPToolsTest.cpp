#include "TestHome.h"

#include "agent/ArgumentOverflowError.h"
#include "agent/JSONRPCRequest.h"
#include "agent/MCPCallToolParams.h"
#include "agent/MCPInitializeParams.h"
#include "agent/MCPTools.h"
#include "agent/ToolArguments.h"
#include "rules/RuleRegistry.h"
#include "support/JsonDecoder.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace kestrow;
using namespace kestrow::test;

namespace {

JSONValue::Object arguments(const char* json)
{
    return JsonDecoder::parse(QByteArray(json)).toObject();
}

// The tool's one text item, which must not be an error.
QString text(const MCPCallToolResult& result)
{
    EXPECT_FALSE(result.isError) << result.content.at(0).text.toStdString();
    EXPECT_EQ(result.content.size(), 1u);
    EXPECT_EQ(result.content.at(0).type, QStringLiteral("text"));
    return result.content.at(0).text;
}

JSONValue document(const MCPCallToolResult& result)
{
    return JsonDecoder::parse(text(result).toUtf8());
}

QList<QByteArray> auditLines(const TestHome& home)
{
    QFile log(home.path(QStringLiteral(".kestrow/audit.jsonl")));
    return log.open(QIODevice::ReadOnly) ? log.readAll().trimmed().split('\n') : QList<QByteArray>{};
}

} // namespace

TEST(JSONRPCRequest, IdsAreIntegersThenStringsAndNothingElse)
{
    const auto id = [](const char* line) { return JSONRPCRequest::decode(QByteArray(line)).id; };
    EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":7,"method":"m"})"), JSONRPCId(7));
    EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":1.0,"method":"m"})"), JSONRPCId(1));
    EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":9223372036854775807,"method":"m"})"),
              JSONRPCId(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":"7","method":"m"})"), JSONRPCId(QStringLiteral("7")));
    EXPECT_EQ(id(R"({"jsonrpc":"2.0","id":null,"method":"m"})"), std::nullopt);
    for (const char* refused :
         {R"({"jsonrpc":"2.0","id":1.5,"method":"m"})", R"({"jsonrpc":"2.0","id":true,"method":"m"})",
          R"({"jsonrpc":"2.0","id":1e19,"method":"m"})", R"({"jsonrpc":"2.0","id":{},"method":"m"})",
          R"({"jsonrpc":2,"method":"m"})", R"({"jsonrpc":"2.0","id":1})", "[1]",
          "{\"jsonrpc\":\"2.0\",\"method\":\"\xff\"}"})
        EXPECT_THROW((void)JSONRPCRequest::decode(QByteArray(refused)), JsonDecodingError) << refused;
    // A NUL byte inside a string is no JSON; escaped, it is.
    const char nul[] = "{\"jsonrpc\":\"\0\",\"method\":\"m\"}";
    EXPECT_THROW((void)JSONRPCRequest::decode(QByteArray(nul, sizeof nul - 1)), JsonDecodingError);
    EXPECT_EQ(JSONRPCRequest::decode(R"({"jsonrpc":"\u0000","method":"m"})").jsonrpc, QString(QChar(0)));

    // The parameter records a client of the library reads.
    const JSONValue call = JsonDecoder::parse(R"({"name":"list_rules","arguments":{"a":1}})");
    EXPECT_EQ(MCPCallToolParams::fromJson(call).arguments->size(), 1u);
    EXPECT_THROW((void)MCPCallToolParams::fromJson(JsonDecoder::parse(R"({"name":"x","arguments":[1]})")),
                 JsonDecodingError);
    const MCPInitializeParams initialize = MCPInitializeParams::fromJson(
        JsonDecoder::parse(R"({"protocolVersion":"2024-11-05","clientInfo":{"name":"c","version":"1"}})"));
    EXPECT_EQ(initialize.clientInfo->name, QStringLiteral("c"));
    EXPECT_FALSE(initialize.capabilities);
}

TEST(ToolArguments, WrongTypesAreAbsentAndNumbersTruncateOrOverflow)
{
    const ToolArguments given(arguments(R"({"flag":"true","n":-2.9,"big":1e300,"mb":1.5,"list":["systemCaches",3,
        "uvCache","CRASH_REPORTS"],"s":5})"));
    EXPECT_EQ(given.boolean(QStringLiteral("flag")), std::nullopt);
    EXPECT_EQ(given.string(QStringLiteral("s")), std::nullopt);
    EXPECT_EQ(given.integer(QStringLiteral("n")), -2);
    EXPECT_EQ(given.megabytesInBytes(QStringLiteral("mb")), 1572864);
    EXPECT_THROW((void)given.integer(QStringLiteral("big")), ArgumentOverflowError);
    EXPECT_THROW((void)given.megabytesInBytes(QStringLiteral("big")), ArgumentOverflowError);
    EXPECT_EQ(given.strings(QStringLiteral("list")).size(), 3);
    EXPECT_EQ(given.categories(QStringLiteral("list")),
              (CategorySet{StorageCategory::systemCaches, StorageCategory::crashReports}));
    // 2^63 - 1 reads as the double 2^63: no integer.
    EXPECT_THROW((void)ToolArguments(arguments(R"({"d":9223372036854775807})")).integer(QStringLiteral("d")),
                 ArgumentOverflowError);
    EXPECT_EQ(ToolArguments(std::nullopt).categories(QStringLiteral("list")), CategorySet{});
}

TEST(MCPTools, CleanIsADryRunUnlessPermanentWhichDeletesWhateverDryRunSays)
{
    TestHome home;
    const MCPTools tools(home.path());
    const QString blob = home.writeFile(QStringLiteral(".cache/tool/blob"), 4096);
    const QString path = home.path(QStringLiteral(".cache/tool"));

    for (const char* nothing : {"{}", R"({"categories":["uvCache"]})", R"({"paths":[5]})"})
        EXPECT_EQ(text(tools.execute(QStringLiteral("clean_storage"), arguments(nothing))),
                  QStringLiteral("No target paths or categories matched for cleanup."));
    EXPECT_TRUE(auditLines(home).isEmpty()) << "nothing to clean touches no service";

    for (const QString& dryRun : {QStringLiteral(""), QStringLiteral(R"(,"dry_run":"false")")}) {
        const JSONValue summary = document(tools.execute(
            QStringLiteral("clean_storage"),
            arguments((QStringLiteral(R"({"paths":[")") + path + QStringLiteral("\"]") + dryRun + QLatin1Char('}'))
                          .toUtf8()
                          .constData())));
        EXPECT_TRUE(summary.find(QStringLiteral("isDryRun"))->toBool());
        EXPECT_TRUE(QFile::exists(blob));
    }

    const JSONValue purge = document(tools.execute(
        QStringLiteral("clean_storage"),
        arguments((QStringLiteral(R"({"dry_run":true,"permanent":true,"paths":[")") + path + QStringLiteral("\"]}"))
                      .toUtf8()
                      .constData())));
    EXPECT_FALSE(purge.find(QStringLiteral("isDryRun"))->toBool());
    EXPECT_TRUE(purge.find(QStringLiteral("isPermanentPurge"))->toBool());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(QFile::exists(home.trashFilesFolder() + QStringLiteral("/tool")));

    const QList<QByteArray> lines = auditLines(home);
    ASSERT_EQ(lines.size(), 3);
    for (const QByteArray& line : lines)
        EXPECT_TRUE(line.contains(R"("client":"mcp")")) << line.constData();
    EXPECT_TRUE(lines[2].contains(R"("operationType":"purge")"));
}

TEST(MCPTools, RegisterRuleKeepsTheLastRuleAloneAndListRulesShowsBuiltInsOnly)
{
    TestHome home;
    const MCPTools tools(home.path());
    EXPECT_EQ(text(tools.execute(QStringLiteral("register_rule"),
                                 arguments(R"({"id":"custom_one","name":"One","pattern":"~/.cache/one/*",
                                     "category":"nonsense","risk_tier":"safe_to_delete"})"))),
              QStringLiteral("Successfully registered rule 'custom_one' matching pattern '~/.cache/one/*'"));
    EXPECT_EQ(text(tools.execute(QStringLiteral("register_rule"),
                                 arguments(R"({"id":"custom_two","name":"Two","pattern":"~/.cache/two/*",
                                     "category":"systemCaches","risk_tier":"unsafe","description":"why"})"))),
              QStringLiteral("Successfully registered rule 'custom_two' matching pattern '~/.cache/two/*'"));

    QFile file(home.path(QStringLiteral(".kestrow/rules.json")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray saved = file.readAll();
    EXPECT_FALSE(saved.contains("custom_one"));
    EXPECT_TRUE(saved.contains(R"("riskTier" : "REVIEW_REQUIRED")")) << saved.constData();
    EXPECT_TRUE(saved.contains(R"("description" : "why")"));

    const JSONValue::Array listed = document(tools.execute(QStringLiteral("list_rules"), std::nullopt)).toArray();
    EXPECT_EQ(listed.size(), RuleRegistry({.homeURL = home.path()}).allRules().size());
    for (const JSONValue& rule : listed)
        EXPECT_TRUE(rule.find(QStringLiteral("isBuiltIn"))->toBool());

    // The first rule's tier and category as the tool chose them, seen before the second replaced it.
    TestHome other;
    (void)MCPTools(other.path())
        .execute(QStringLiteral("register_rule"),
                 arguments(R"({"id":"custom_one","name":"One","pattern":"~/.cache/one/*",
            "category":"nonsense","risk_tier":"safe_to_delete"})"));
    QFile first(other.path(QStringLiteral(".kestrow/rules.json")));
    ASSERT_TRUE(first.open(QIODevice::ReadOnly));
    const QByteArray one = first.readAll();
    EXPECT_TRUE(one.contains(R"("riskTier" : "SAFE_TO_DELETE")"));
    EXPECT_TRUE(one.contains(R"("category" : "DEVELOPER_CACHE")"));
    EXPECT_TRUE(one.contains(R"("isRegenerable" : true)"));

    const MCPCallToolResult missing =
        tools.execute(QStringLiteral("register_rule"), arguments(R"({"id":"x","name":"x","pattern":"~/.cache/x",
            "category":"x","risk_tier":5})"));
    EXPECT_TRUE(missing.isError);
    EXPECT_EQ(missing.content.at(0).text, QStringLiteral("Missing required arguments for register_rule"));
}

TEST(MCPTools, InspectTruncatesTheDepthAndMissingArgumentsAnswerWithErrors)
{
    TestHome home;
    home.writeFile(QStringLiteral("tree/a/b/c/d/file"), 10);
    const MCPTools tools(home.path());
    const auto deepest = [](const JSONValue& node, const auto& self) -> int {
        int depth = 0;
        if (const JSONValue* children = node.find(QStringLiteral("children")))
            for (const JSONValue& child : children->toArray())
                depth = std::max(depth, 1 + self(child, self));
        return depth;
    };
    const QString tree = home.path(QStringLiteral("tree"));
    const JSONValue node = document(tools.execute(
        QStringLiteral("inspect_directory"),
        arguments((QStringLiteral(R"({"depth":2.9,"path":")") + tree + QStringLiteral("\"}")).toUtf8().constData())));
    EXPECT_EQ(deepest(node, deepest), 2);

    const auto error = [&tools](const char* name, const char* given) {
        const MCPCallToolResult result = tools.execute(QString::fromLatin1(name), arguments(given));
        EXPECT_TRUE(result.isError);
        return result.content.at(0).text;
    };
    EXPECT_EQ(error("inspect_directory", R"({"path":5})"), QStringLiteral("Missing required argument 'path'"));
    EXPECT_EQ(error("uninstall_app", "{}"), QStringLiteral("Missing required argument 'bundle_id_or_name'"));
    EXPECT_THROW(
        (void)tools.execute(
            QStringLiteral("inspect_directory"),
            arguments(
                (QStringLiteral(R"({"depth":1e19,"path":")") + tree + QStringLiteral("\"}")).toUtf8().constData())),
        ArgumentOverflowError);
}
