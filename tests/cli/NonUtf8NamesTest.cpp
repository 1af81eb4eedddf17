#include "KestrowProcess.h"
#include "TestHome.h"

#include "cleanup/AuditLogEntry.h"
#include "platform/NativePath.h"
#include "storage/ScanResult.h"
#include "support/JsonDecoder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kestrow;
using namespace kestrow::test;

namespace {

// Byte 0xE9 alone is not UTF-8; a lossy reading makes it U+FFFD, whose UTF-8 is the sibling.
const QByteArray rawName("caf\xe9");
const QByteArray replacementName("caf\xef\xbf\xbd");

QByteArray native(const TestHome& home, const QByteArray& relative = {})
{
    const QByteArray path = NativePath::encode(home.path());
    return relative.isEmpty() ? path : path + '/' + relative;
}

void writeNative(const QByteArray& path, qsizetype size)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const QByteArray content(size, 'x');
    const bool written = fd >= 0 && ::write(fd, content.constData(), static_cast<size_t>(size)) == size;
    if (fd >= 0)
        ::close(fd);
    if (!written)
        throw std::runtime_error("cannot write test file " + path.toStdString());
}

// -1 when nothing is there.
qint64 sizeAt(const QByteArray& path)
{
    struct stat info {};
    return ::lstat(path.constData(), &info) == 0 ? static_cast<qint64>(info.st_size) : -1;
}

// "Library/Caches" holding `caf\xe9` (2 MB) and `caf\xef\xbf\xbd` (3 KB): each is an item of
// the user caches. Returns the folder's native path.
QByteArray makeSiblings(const TestHome& home)
{
    home.makeDirectory(QStringLiteral("Library/Caches"));
    const QByteArray caches = native(home, "Library/Caches");
    writeNative(caches + '/' + rawName, 2000000);
    writeNative(caches + '/' + replacementName, 3000);
    return caches;
}

JsonValue::Array records(const KestrowRun& run)
{
    return JsonDecoder::parse(run.out.toUtf8()).find(QStringLiteral("records"))->toArray();
}

QString field(const JsonValue& record, const char* key)
{
    return record.find(QLatin1String(key))->toString();
}

} // namespace

TEST(NonUtf8Names, ScanReportsBothSiblingsApartWithTheirOwnSizes)
{
    TestHome home;
    const QByteArray caches = makeSiblings(home);
    const QString raw = NativePath::decode(caches + '/' + rawName);
    const QString replacement = NativePath::decode(caches + '/' + replacementName);

    const KestrowRun json = runKestrowWithBytes({"scan", "--json", "--home", native(home)});
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    EXPECT_TRUE(json.out.contains(QStringLiteral("\\/Library\\/Caches\\/caf%E9\"")));
    EXPECT_TRUE(json.out.contains(QStringLiteral("\\/Library\\/Caches\\/caf\\udce9\"")));
    std::map<QString, std::int64_t> sizes;
    for (const DiscoveredItem& item :
         ScanResult::fromJson(JsonDecoder::parse(json.out.toUtf8()), DateEncoding::iso8601).items)
        sizes[item.path] = item.logicalSizeBytes;
    EXPECT_EQ(sizes[raw], 2000000);
    EXPECT_EQ(sizes[replacement], 3000);

    const KestrowRun table = runKestrowWithBytes({"scan", "--home", native(home)});
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    EXPECT_TRUE(table.out.contains(QStringLiteral("caf\\xE9 Cache").leftJustified(36) + QStringLiteral("  ") +
                                   home.path() + QStringLiteral("/Library/Caches/caf\\xE9\n")))
        << table.out.toStdString();

    const KestrowRun excluded =
        runKestrowWithBytes({"scan", "--json", "--home", native(home), "--exclude", rawName}, caches);
    ASSERT_EQ(excluded.exitCode, 0) << excluded.err.toStdString();
    EXPECT_FALSE(excluded.out.contains(QStringLiteral("caf%E9")));
    EXPECT_TRUE(excluded.out.contains(QStringLiteral("caf%EF%BF%BD")));
}

TEST(NonUtf8Names, CleanMovesThatFileAndRecordsItsByte)
{
    TestHome home;
    const QByteArray caches = makeSiblings(home);
    const QByteArray homeArgument = native(home);

    // Relative to a working folder whose own name is not UTF-8 either.
    home.makeDirectory(QStringLiteral("Library/Caches/app"));
    const QByteArray odd = caches + "/app/d\xff";
    ASSERT_EQ(::mkdir(odd.constData(), 0755), 0);
    writeNative(odd + "/blob", 5000);
    const KestrowRun dry = runKestrowWithBytes({"clean", "--dry-run", "--home", homeArgument, "blob", rawName}, odd);
    EXPECT_EQ(dry.exitCode, 1) << "the second name is not in this folder";
    EXPECT_TRUE(
        dry.out.contains(QStringLiteral("KB  ") + home.path() + QStringLiteral("/Library/Caches/app/d\\xFF/blob\n")))
        << dry.out.toStdString();
    EXPECT_TRUE(dry.out.contains(QStringLiteral("File does not exist: ") + home.path() +
                                 QStringLiteral("/Library/Caches/app/d\\xFF/caf\\xE9\n")));

    const KestrowRun shown =
        runKestrowWithBytes({"clean", "--dry-run", "--home", homeArgument, caches + '/' + rawName});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_TRUE(shown.out.contains(QStringLiteral("  ") + home.path() + QStringLiteral("/Library/Caches/caf\\xE9\n")));

    const KestrowRun moved = runKestrowWithBytes({"clean", "--json", "--home", homeArgument, caches + '/' + rawName});
    ASSERT_EQ(moved.exitCode, 0) << moved.err.toStdString();
    EXPECT_EQ(sizeAt(caches + '/' + rawName), -1);
    EXPECT_EQ(sizeAt(caches + '/' + replacementName), 3000) << "the sibling stays";
    const JsonValue::Array trashed = records(moved);
    ASSERT_EQ(trashed.size(), 1u);
    EXPECT_EQ(field(trashed[0], "sourcePath"), NativePath::decode(caches + '/' + rawName));
    EXPECT_TRUE(field(trashed[0], "sourceURL").endsWith(QStringLiteral("/Library/Caches/caf%E9")));
    EXPECT_TRUE(moved.out.contains(QStringLiteral("\\/Library\\/Caches\\/caf\\udce9\"")));
    EXPECT_EQ(sizeAt(NativePath::encode(field(trashed[0], "trashPath"))), 2000000);

    QFile log(home.path(QStringLiteral(".kestrow/audit.jsonl")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QByteArray last = log.readAll().trimmed().split('\n').last();
    EXPECT_TRUE(last.contains("\\/Library\\/Caches\\/caf\\udce9\"")) << last.constData();
    EXPECT_EQ(AuditLogEntry::fromJson(JsonDecoder::parse(last)).paths,
              QStringList{NativePath::decode(caches + '/' + rawName)});
    EXPECT_EQ(runKestrowWithBytes({"audit", "verify", "--home", homeArgument}).exitCode, 0);
}

TEST(NonUtf8Names, SweepMovesEachSiblingAsItself)
{
    TestHome home;
    const QByteArray caches = makeSiblings(home);
    const KestrowRun swept = runKestrowWithBytes({"sweep", "--yes", "--json", "--home", native(home)});
    ASSERT_EQ(swept.exitCode, 0) << swept.err.toStdString();
    EXPECT_EQ(sizeAt(caches + '/' + rawName), -1);
    EXPECT_EQ(sizeAt(caches + '/' + replacementName), -1);
    std::map<QString, qint64> trashedSizes;
    for (const JsonValue& record : records(swept))
        trashedSizes[field(record, "sourcePath")] = sizeAt(NativePath::encode(field(record, "trashPath")));
    EXPECT_EQ(trashedSizes, (std::map<QString, qint64>{{NativePath::decode(caches + '/' + rawName), 2000000},
                                                       {NativePath::decode(caches + '/' + replacementName), 3000}}));
}

TEST(NonUtf8Names, CheckRulesAndHomeArgumentsKeepTheirBytes)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("parent"));
    const QByteArray oddHome = native(home, "parent/h\xe9");
    ASSERT_EQ(::mkdir(oddHome.constData(), 0755), 0);

    const KestrowRun check = runKestrowWithBytes({"check", "--home", oddHome, oddHome + "/.cache/caf\xe9"});
    EXPECT_EQ(check.exitCode, 0) << check.err.toStdString();
    EXPECT_TRUE(check.out.startsWith(home.path() + QStringLiteral("/parent/h\\xE9/.cache/caf\\xE9: allowed.")))
        << check.out.toStdString();
    // "h\xe9" relative to the working folder is the odd home itself.
    const KestrowRun refused =
        runKestrowWithBytes({"check", "--json", "--home", "h\xe9", "/etc/caf\xe9"}, native(home, "parent"));
    EXPECT_EQ(refused.exitCode, 1) << refused.err.toStdString();
    EXPECT_TRUE(refused.out.contains(QStringLiteral("\"path\" : \"\\/etc\\/caf\\udce9\"")));
    const KestrowRun missing = runKestrowWithBytes({"scan", "--home", native(home, "nowhere\xe9")});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_EQ(missing.err, QStringLiteral("kestrow: --home ") + home.path() +
                               QStringLiteral("/nowhere\\xE9: no such folder; give an existing folder.\n"));

    // A rule's pattern names the raw byte, not its sibling.
    const KestrowRun added = runKestrowWithBytes({"rules", "add", "--home", native(home), "--id", "custom.cafe",
                                                  "--name", "Cafe", "--pattern", "~/stuff/" + rawName, "--category",
                                                  "DYNAMIC_RULE", "--tier", "SAFE_TO_DELETE"});
    EXPECT_EQ(added.exitCode, 0) << added.err.toStdString();
    EXPECT_TRUE(added.out.contains(QStringLiteral("matching ~/stuff/caf\\xE9.")));
    home.makeDirectory(QStringLiteral("stuff"));
    writeNative(native(home, "stuff/" + rawName), 2000000);
    writeNative(native(home, "stuff/" + replacementName), 3000);
    const KestrowRun ruled =
        runKestrowWithBytes({"scan", "--json", "--home", native(home), "--category", "DYNAMIC_RULE"});
    ASSERT_EQ(ruled.exitCode, 0) << ruled.err.toStdString();
    const std::vector<DiscoveredItem> items =
        ScanResult::fromJson(JsonDecoder::parse(ruled.out.toUtf8()), DateEncoding::iso8601).items;
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].path, NativePath::decode(native(home, "stuff/" + rawName)));
    EXPECT_EQ(items[0].logicalSizeBytes, 2000000);
}
