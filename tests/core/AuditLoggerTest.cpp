#include "TestHome.h"

#include "cleanup/AuditLineScanner.h"
#include "cleanup/AuditLogger.h"
#include "platform/NativePath.h"
#include "support/JsonDecoder.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

const QUuid runId = QUuid::fromString(QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
const QDateTime moment = QDateTime::fromMSecsSinceEpoch(1772360130123, Qt::UTC); // 2026-03-01T10:15:30.123Z

AuditLogEntry recordTrash(AuditLogger& logger, const QStringList& paths, std::optional<double> durationMs = {})
{
    return logger.record(runId, AuditOperationType::trash, paths.size(), 4096 * paths.size(), paths,
                         QStringLiteral("gui"), durationMs, moment);
}

QByteArrayList fileLines(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll().split('\n');
}

void writeLines(const QString& path, const QByteArrayList& lines)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(lines.join('\n'));
}

template <typename Body> AuditLoggerError caught(Body&& body)
{
    try {
        body();
    } catch (const AuditLoggerError& error) {
        return error;
    }
    ADD_FAILURE() << "expected an AuditLoggerError";
    return AuditLoggerError::writeFailed({});
}

} // namespace

TEST(AuditLogger, HashInputTextsAreExact)
{
    EXPECT_EQ(AuditLogger::durationText(std::nullopt), QStringLiteral("0.0"));
    EXPECT_EQ(AuditLogger::durationText(0.0), QStringLiteral("0.0"));
    EXPECT_EQ(AuditLogger::durationText(1250), QStringLiteral("1250.0"));
    EXPECT_EQ(AuditLogger::durationText(12.5), QStringLiteral("12.5"));
    EXPECT_EQ(AuditLogger::durationText(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(AuditLogger::durationText(0.0001), QStringLiteral("0.0001"));
    EXPECT_EQ(AuditLogger::durationText(0.00012345), QStringLiteral("0.00012345"));
    EXPECT_EQ(AuditLogger::durationText(1e-05), QStringLiteral("1e-05"));
    EXPECT_EQ(AuditLogger::durationText(1.5e-07), QStringLiteral("1.5e-07"));
    EXPECT_EQ(AuditLogger::durationText(1e15), QStringLiteral("1000000000000000.0"));
    EXPECT_EQ(AuditLogger::durationText(9007199254740992.0), QStringLiteral("9007199254740992.0"));
    EXPECT_EQ(AuditLogger::durationText(9007199254740994.0), QStringLiteral("9.007199254740994e+15"));
    EXPECT_EQ(AuditLogger::durationText(1e16), QStringLiteral("1e+16"));
    EXPECT_EQ(AuditLogger::durationText(5e-324), QStringLiteral("5e-324"));

    // Digests of the texts "<64 zeros>|<time>|<id>|trash|0|0|gui|0.0|" and
    // "...|dry_run|2|4096|mcp|1250.0|/h/a,/h/b", taken with sha256sum.
    const QString id = QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    const QString time = QStringLiteral("2026-03-01T10:15:30.123Z");
    EXPECT_EQ(AuditLogger::computeHash(AuditLogger::genesisHash(), time, id, QStringLiteral("trash"), 0, 0, {},
                                       QStringLiteral("gui"), std::nullopt),
              QStringLiteral("34d72a370a42448ea1171c77c33122b785da87bb4c87561f2147e77bceb56d97"));
    EXPECT_EQ(AuditLogger::computeHash(AuditLogger::genesisHash(), time, id, QStringLiteral("trash"), 0, 0, {},
                                       QStringLiteral("gui"), 0.0),
              QStringLiteral("34d72a370a42448ea1171c77c33122b785da87bb4c87561f2147e77bceb56d97"));
    EXPECT_EQ(AuditLogger::computeHash(AuditLogger::genesisHash(), time, id, QStringLiteral("dry_run"), 2, 4096,
                                       {QStringLiteral("/h/b"), QStringLiteral("/h/a")}, QStringLiteral("mcp"), 1250),
              QStringLiteral("64a26bb2f7890db37b769ccbf2905b869c04521bbf0b3d0d077a78d040a367f5"));
}

TEST(AuditLogger, FirstRecordCreatesThePrivateLogAndLinesChain)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    EXPECT_EQ(logger.logFileURL(), home.path(QStringLiteral(".kestrow/audit.jsonl")));
    EXPECT_TRUE(logger.readEntries().empty());
    EXPECT_EQ(logger.verifyIntegrity(), (AuditVerificationResult{true, 0, std::nullopt, std::nullopt}));
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral(".kestrow"))));

    const AuditLogEntry first = recordTrash(logger, {});
    EXPECT_EQ(first.rollingHash, QStringLiteral("34d72a370a42448ea1171c77c33122b785da87bb4c87561f2147e77bceb56d97"));
    EXPECT_EQ(QFileInfo(home.path(QStringLiteral(".kestrow"))).permissions() & 0x7777,
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser |
                  QFile::ExeUser);
    EXPECT_EQ(QFileInfo(logger.logFileURL()).permissions() & 0x7777,
              QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);

    const QString path = home.path(QStringLiteral("Library/Caches/x"));
    const AuditLogEntry second = recordTrash(logger, {path}, 12.5);
    EXPECT_EQ(second.previousHash, first.rollingHash);
    EXPECT_EQ(logger.lastHash(), second.rollingHash);
    const QByteArrayList lines = fileLines(logger.logFileURL());
    ASSERT_EQ(lines.size(), 3); // two lines, each closed by a line feed
    EXPECT_EQ(lines[0], "{\"bytesFreed\":0,\"client\":\"gui\",\"itemsCount\":0,"
                        "\"operationId\":\"E621E1F8-C36C-495A-93FC-0C247A3E6E5F\",\"operationType\":\"trash\","
                        "\"paths\":[],\"previousHash\":\"" +
                            AuditLogger::genesisHash().toLatin1() + "\",\"rollingHash\":\"" +
                            first.rollingHash.toLatin1() + "\",\"timestamp\":\"2026-03-01T10:15:30.123Z\"}");
    EXPECT_TRUE(lines[1].contains("\"durationMs\":12.5,"));
    EXPECT_TRUE(lines[1].contains(QString(path).replace(QStringLiteral("/"), QStringLiteral("\\/")).toUtf8()));
    EXPECT_EQ(logger.readEntries(), (std::vector<AuditLogEntry>{first, second}));
    EXPECT_EQ(AuditLogger({.homeURL = home.path()}).verifyIntegrity().totalEntries, 2);
}

TEST(AuditLogger, VerificationNamesTheFirstBrokenLine)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    for (const char* name : {"a", "b", "c"})
        recordTrash(logger, {home.path(QStringLiteral("x/") + QLatin1String(name)), home.path(QStringLiteral("y"))},
                    1250);
    const QByteArrayList original = fileLines(logger.logFileURL());
    const auto hashOf = [&](int line) { return logger.readEntries()[static_cast<size_t>(line)].rollingHash; };

    // Blank lines and a reordered path array (the hash sorts paths) change nothing; the
    // writer's "1250" reads back and hashes as "1250.0".
    QByteArrayList edited = original;
    edited[1].replace(
        QByteArray("\"paths\":[\"" + home.path(QStringLiteral("x/b")).toUtf8().replace("/", "\\/") + "\","),
        "\"paths\":[");
    edited[1].replace("\\/y\"]",
                      QByteArray("\\/y\",\"" + home.path(QStringLiteral("x/b")).toUtf8().replace("/", "\\/") + "\"]"));
    ASSERT_NE(edited[1], original[1]);
    ASSERT_TRUE(original[1].contains("\"durationMs\":1250,"));
    edited.insert(1, "  \t");
    writeLines(logger.logFileURL(), edited);
    EXPECT_TRUE(logger.verifyIntegrity().isValid);

    edited[2].replace("x\\/b", "x\\/B"); // a changed character in a path, behind the blank line
    writeLines(logger.logFileURL(), edited);
    const AuditVerificationResult modified = logger.verifyIntegrity();
    EXPECT_FALSE(modified.isValid);
    EXPECT_EQ(modified.totalEntries, 3);
    EXPECT_EQ(modified.tamperedLineIndex, 1);
    EXPECT_TRUE(modified.failureReason->startsWith(
        QStringLiteral("Rolling hash mismatch at line 2. Content was modified. Computed ")));
    EXPECT_TRUE(modified.failureReason->endsWith(QStringLiteral(", stored ") + hashOf(1)));

    writeLines(logger.logFileURL(), {original[0], original[2], ""});
    const QString removedHash = QString::fromLatin1(original[1].mid(original[1].indexOf("rollingHash") + 14, 64));
    EXPECT_EQ(logger.verifyIntegrity(),
              (AuditVerificationResult{false, 2, 1,
                                       QStringLiteral("Previous hash mismatch at line 2. Expected ") + hashOf(0) +
                                           QStringLiteral(", got ") + removedHash}));

    writeLines(logger.logFileURL(), {original[1], original[0], original[2], ""});
    EXPECT_EQ(logger.verifyIntegrity().tamperedLineIndex, 0);
}

TEST(AuditLogger, FailuresCarryTheirTexts)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    recordTrash(logger, {});
    QByteArrayList lines = fileLines(logger.logFileURL());
    lines.insert(1, "{\"not\":\"an entry\"");
    writeLines(logger.logFileURL(), lines);
    const QByteArray damaged = fileLines(logger.logFileURL()).join('\n');
    const AuditLoggerError unreadable = caught([&] { (void)logger.verifyIntegrity(); });
    EXPECT_EQ(unreadable.kind(), AuditLoggerError::Case::decodingFailed);
    EXPECT_EQ(unreadable.line(), 2);
    EXPECT_TRUE(unreadable.description().startsWith(QStringLiteral("Failed to parse audit log at line 2: ")));
    EXPECT_EQ(caught([&] { recordTrash(logger, {}); }), unreadable); // no appends until repaired
    EXPECT_EQ(fileLines(logger.logFileURL()).join('\n'), damaged);

    writeLines(logger.logFileURL(), {"\xff\xfe"});
    EXPECT_EQ(
        caught([&] { (void)logger.readEntries(); }).description(),
        QStringLiteral("Failed to read audit log file: Could not read audit log: The file is not valid UTF-8 text."));

    // A parent that is a regular file refuses even root.
    const QString file = home.writeFile(QStringLiteral("plain"), 1);
    AuditLogger blocked({.logFileURL = file + QStringLiteral("/audit.jsonl")});
    EXPECT_EQ(caught([&] { recordTrash(blocked, {}); }).description(),
              QStringLiteral("Failed to write audit log entry: Unable to create log file: Not a directory"));
    AuditLogger deeper({.logFileURL = file + QStringLiteral("/sub/audit.jsonl")});
    EXPECT_EQ(caught([&] { recordTrash(deeper, {}); }).description(),
              QStringLiteral("Failed to create ~/.kestrow directory: Not a directory"));
    AuditLogger fresh({.homeURL = home.makeDirectory(QStringLiteral("other"))});
    EXPECT_EQ(caught([&] { recordTrash(fresh, {}, std::numeric_limits<double>::infinity()); }).description(),
              QStringLiteral("Failed to write audit log entry: Failed to encode audit entry to JSON."));
    EXPECT_TRUE(fresh.readEntries().empty());
}

TEST(AuditLogger, NamesWithLineBreaksAndRawBytesRoundTrip)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    const QString base = home.path(QStringLiteral(".cache/"));
    // Every line break of the Unicode newline set, a quote, a backslash, an astral character,
    // and names that are not UTF-8 (raw bytes 0xFF and 0xFE, and a broken sequence).
    const QStringList odd{base + QStringLiteral("line\u2028sep"),
                          base + QStringLiteral("para\u2029sep"),
                          base + QStringLiteral("next\u0085line"),
                          base + QStringLiteral("cr\rlf\nvt\u000bff\u000c"),
                          base + QStringLiteral("quote\"back\\slash\tend \U0001F600"),
                          base + NativePath::decode(QByteArray("raw\xff")),
                          base + NativePath::decode(QByteArray("raw\xfe")),
                          base + NativePath::decode(QByteArray("cut\xe2\x80"))};
    const AuditLogEntry first = recordTrash(logger, odd, 12.5);
    QStringList reversed = odd;
    std::reverse(reversed.begin(), reversed.end());
    const AuditLogEntry second = recordTrash(logger, reversed);

    EXPECT_EQ(fileLines(logger.logFileURL()).size(), 3) << "each entry stays on one line";
    EXPECT_EQ(AuditLogger({.homeURL = home.path()}).readEntries(), (std::vector<AuditLogEntry>{first, second}));
    EXPECT_EQ(logger.verifyIntegrity(), (AuditVerificationResult{true, 2, std::nullopt, std::nullopt}));

    // The hash sees raw bytes as they are, and sorts paths in one order, whatever the input.
    const auto hashOf = [&](const QStringList& paths) {
        return AuditLogger::computeHash(AuditLogger::genesisHash(), QStringLiteral("t"), QStringLiteral("id"),
                                        QStringLiteral("trash"), 1, 1, paths, QStringLiteral("gui"), std::nullopt);
    };
    EXPECT_NE(hashOf({odd[5]}), hashOf({odd[6]}));
    EXPECT_EQ(hashOf(odd), hashOf(reversed));
    const QString composed = base + QStringLiteral("\u00e9");
    const QString decomposed = base + QStringLiteral("e\u0301");
    EXPECT_EQ(hashOf({composed, decomposed}), hashOf({decomposed, composed}));
}

TEST(AuditLogger, QuickLineReadingAgreesWithTheFullDecoder)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    const AuditLogEntry written =
        recordTrash(logger, {home.path(QStringLiteral("a\u2028b")), NativePath::decode(QByteArray("/h/\xff"))}, 1250);
    const QByteArray line = fileLines(logger.logFileURL()).first();
    const auto fullDecode = [](const QByteArray& text) { return AuditLogEntry::fromJson(JsonDecoder::parse(text)); };
    // What the writer writes is read quickly, and as the full decoder reads it.
    AuditLogEntry quick;
    ASSERT_TRUE(AuditLineScanner::scan(line, &quick));
    EXPECT_EQ(quick, written);
    EXPECT_EQ(quick, fullDecode(line));

    const auto replaced = [&](const char* from, const char* to) { return QByteArray(line).replace(from, to); };
    const QByteArray durationKey = "\"durationMs\":1250";
    const QByteArrayList variants{
        replaced(durationKey, "\"durationMs\":1.5E+3"),
        replaced(durationKey, "\"durationMs\":-0"),
        replaced(durationKey, "\"durationMs\":-0.0"),
        replaced(durationKey, "\"durationMs\":1e-400"),
        replaced(durationKey, "\"durationMs\":5e-324"),
        replaced(durationKey, "\"durationMs\":null"),
        replaced(durationKey, "\"durationMs\":\"1\""),
        replaced(durationKey, "\"durationMs\":01"),
        replaced(QByteArray(durationKey + ","), ""),
        replaced("\"itemsCount\":2", "\"itemsCount\":2.0"),
        replaced("\"itemsCount\":2", "\"itemsCount\":-2"),
        replaced("\"itemsCount\":2", "\"itemsCount\":1234567890123456789"),
        replaced("\"client\":\"gui\"", "\"client\":\"g\\u0000\\ud83d\\ude00\\ud800\\u00e9\\b\\f\\n\\r\\t\\\"\""),
        replaced("\"client\":\"gui\"", "\"client\":\"g\x7f\x01\""),
        replaced("\"client\":\"gui\"", "\"client\":\"\\x\""),
        replaced("\"client\":\"gui\"", "\"client\":\"gui\",\"client\":\"mcp\""),
        replaced("\"client\":\"gui\"", "\"client\":\"gui\",\"extra\":[1,{}]"),
        replaced("\"client\"", "\"\\u0063lient\""),
        replaced("\"trash\"", "\"tr\\u0061sh\""),
        replaced("\"trash\"", "\"sweep\""),
        replaced("\"paths\":[", "\"paths\":[ 7,"),
        replaced("{", " \t{ "),
        replaced("{", "\xef\xbb\xbf{"),
        QByteArray(line + " "),
        QByteArray(line + "x"),
        line.chopped(1),
    };
    for (const QByteArray& variant : variants) {
        AuditLogEntry scanned;
        if (!AuditLineScanner::scan(variant, &scanned))
            continue; // declined: the full decoder decides alone
        try {
            const AuditLogEntry decoded = fullDecode(variant);
            EXPECT_EQ(scanned, decoded) << variant.toStdString();
            // 0.0 and -0.0 compare equal, but hash apart.
            EXPECT_EQ(AuditLogger::durationText(scanned.durationMs), AuditLogger::durationText(decoded.durationMs));
        } catch (const JsonDecodingError&) {
            ADD_FAILURE() << "read quickly but not by the decoder: " << variant.toStdString();
        }
    }
}
