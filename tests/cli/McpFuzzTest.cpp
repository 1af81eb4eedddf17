#include "KestrowProcess.h"
#include "TestHome.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace kestrow::test;

namespace {

// One line of the corpus and how many answers the server owes it.
struct Line {
    QByteArray text;
    int answers;
};

// A deterministic corpus of hostile and odd lines. None may end the server: numbers in
// `depth` and `min_size_mb` stay within 64-bit integers, and no line is blank.
class Corpus {
public:
    std::vector<Line> lines;

    Corpus()
        : m_random(20240611)
    {
        const QByteArray values[] = {"null",
                                     "true",
                                     "false",
                                     "0",
                                     "-1",
                                     "1.5",
                                     "1e18",
                                     "-9.2e18",
                                     "8e12",
                                     "123456789012345678901234567890",
                                     "\"\"",
                                     "\"text\"",
                                     "[]",
                                     "[1,\"a\"]",
                                     "{}",
                                     "{\"a\":{}}",
                                     "\"\\u0000\\ud800\"",
                                     "\"/\\/\""};
        for (int round = 0; round < 50; ++round) {
            for (const QByteArray& value : values) {
                // Ids of every JSON type: null makes a notification, which gets no answer.
                add("{\"jsonrpc\":\"2.0\",\"id\":" + value + ",\"method\":\"ping\"}", value == "null" ? 0 : 1);
                add("{\"jsonrpc\":" + value + ",\"id\":1,\"method\":\"ping\"}", 1);
                add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":" + value + "}", 1);
                add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/call\",\"params\":" + value + "}", 1);
                add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":" + value + "}}", 1);
                add(call("\"" + value + "\"", value), 1);
                // A path given as text is never walked: it could name the root.
                if (!value.startsWith('"'))
                    add(call("inspect_directory", "{\"path\":" + value + ",\"depth\":3}"), 1);
                if (fits(value, 1))
                    add(call("inspect_directory", "{\"path\":\"/nonexistent/x\",\"depth\":" + value + "}"), 1);
                if (fits(value, 1024.0 * 1024.0))
                    add(call("inspect_anomalies", "{\"min_size_mb\":" + value + "}"), 1);
                add(call("register_rule", "{\"id\":" + value + ",\"name\":\"n\",\"pattern\":" + value +
                                              ",\"category\":" + value + ",\"risk_tier\":" + value + "}"),
                    1);
                add(call("clean_storage", "{\"categories\":" + value + ",\"dry_run\":" + value + "}"), 1);
                add(call("uninstall_app", "{\"dry_run\":" + value + "}"), 1);
            }
            const QByteArray valid = call("list_rules", "{}");
            for (int i = 0; i < 8; ++i) {
                add(valid.left(1 + static_cast<qsizetype>(m_random() % static_cast<unsigned>(valid.size() - 1))), 1);
                add(randomBytes(1 + m_random() % 200), 1);
                add(randomUtf8Breaker(), 1);
            }
        }
        // Deep nesting: within the reader's limit a parameter is only data, beyond it the line
        // is no JSON; neither may exhaust the stack.
        add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\",\"params\":" + QByteArray(500, '[') +
                QByteArray(500, ']') + "}",
            1);
        add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\",\"params\":" + QByteArray(100000, '[') +
                QByteArray(100000, ']') + "}",
            1);
        // Lines of a megabyte: one a request, one garbage.
        add("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\",\"params\":\"" + QByteArray(1 << 20, 'x') + "\"}", 1);
        add(randomBytes(1 << 20), 1);
        add(call("get_system_vitals", "{}"), 1);
        add(call("scan_storage", "{\"min_size_mb\":8e12,\"categories\":[\"systemCaches\",7]}"), 1);
        const char nul[] = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\",\"params\":\"nul\0inside\"}";
        add(QByteArray(nul, sizeof nul - 1), 1);
    }

private:
    // A tool call; a name that is no JSON string yet is quoted.
    static QByteArray call(const QByteArray& name, const QByteArray& arguments)
    {
        return "{\"jsonrpc\":\"2.0\",\"id\":\"c\",\"method\":\"tools/call\",\"params\":{\"name\":" +
               (name.startsWith('"') ? name : '"' + name + '"') + ",\"arguments\":" + arguments + "}}";
    }

    // False for a number that, times `scale`, no 64-bit integer holds: it would end the server.
    static bool fits(const QByteArray& value, double scale)
    {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        return !isNumber || std::abs(number * scale) < 9.2e18;
    }

    void add(QByteArray text, int answers) { lines.push_back({std::move(text), answers}); }

    // Bytes that are neither a newline nor all carriage returns, so that the line is no blank.
    QByteArray randomBytes(std::size_t count)
    {
        QByteArray bytes(static_cast<qsizetype>(count), 'a');
        for (char& byte : bytes) {
            byte = static_cast<char>(m_random() % 256);
            if (byte == '\n' || byte == '\r')
                byte = '{';
        }
        return bytes;
    }

    // A request with a byte sequence that is no UTF-8 inside a string.
    QByteArray randomUtf8Breaker()
    {
        static const QByteArray breakers[] = {"\xff", "\xc3", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xc0\xaf"};
        return "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"p" + breakers[m_random() % 5] + "\"}";
    }

    std::mt19937 m_random;
};

} // namespace

TEST(McpFuzz, OneServerAnswersEveryLineOfAHostileCorpusWithJsonAndStaysAlive)
{
    TestHome home;
    const Corpus corpus;
    QByteArray input;
    int owed = 0;
    for (const Line& line : corpus.lines) {
        input += line.text + '\n';
        owed += line.answers;
    }
    input += "{\"jsonrpc\":\"2.0\",\"id\":\"last\",\"method\":\"ping\"}\n";
    ASSERT_GE(corpus.lines.size(), 10000u);

    KestrowProcess server({QStringLiteral("mcp"), QStringLiteral("--home"), home.path()}, input);
    const KestrowRun run = server.finish(120000);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();

    const QByteArray out = run.out.toUtf8();
    EXPECT_TRUE(out.endsWith('\n'));
    const QList<QByteArray> answers = out.split('\n');
    ASSERT_EQ(answers.size() - 1, owed + 1);
    for (qsizetype i = 0; i + 1 < answers.size(); ++i) {
        const QByteArray& answer = answers[i];
        QJsonParseError error{};
        const QJsonObject object = QJsonDocument::fromJson(answer, &error).object();
        ASSERT_EQ(error.error, QJsonParseError::NoError) << answer.left(200).constData();
        ASSERT_TRUE(std::none_of(answer.begin(), answer.end(), [](char c) {
            return static_cast<unsigned char>(c) < 0x20;
        })) << answer.left(200).constData();
        ASSERT_EQ(object[QStringLiteral("jsonrpc")].toString(), QStringLiteral("2.0"));
        ASSERT_NE(object.contains(QStringLiteral("result")), object.contains(QStringLiteral("error")));
    }
    EXPECT_EQ(answers[answers.size() - 2], QByteArray(R"({"jsonrpc":"2.0","id":"last","result":{}})"));
}
