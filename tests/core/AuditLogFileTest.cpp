#include "TestHome.h"

#include "cleanup/AuditLogger.h"
#include "platform/FileManager.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <atomic>
#include <sys/stat.h>
#include <thread>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

const QUuid runId = QUuid::fromString(QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F"));

AuditLogEntry recordOne(AuditLogger& logger, const QStringList& paths = {})
{
    return logger.record(runId, AuditOperationType::trash, paths.size(), 4096, paths, QStringLiteral("gui"), 12.5,
                         QDateTime::currentDateTimeUtc());
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void overwrite(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
}

template <typename Body> QString failure(Body&& body)
{
    try {
        body();
    } catch (const AuditLoggerError& error) {
        return error.description();
    }
    return QStringLiteral("no error");
}

// A disk that takes half of a write and then stops short or fails with ENOSPC, as a full disk
// does, or that cannot force a file to disk.
class FailingDisk : public SystemCalls {
public:
    enum class Fault { none, shortWrite, noSpace, syncFailure };
    std::atomic<Fault> fault = Fault::none;

    ssize_t write(int fd, const void* data, size_t size) const override
    {
        const Fault now = fault;
        if (now != Fault::shortWrite && now != Fault::noSpace)
            return SystemCalls::write(fd, data, size);
        const ssize_t half = SystemCalls::write(fd, data, size / 2);
        if (now == Fault::shortWrite)
            return half;
        errno = ENOSPC;
        return -1;
    }

    int sync(int fd) const override
    {
        if (fault == Fault::syncFailure) {
            errno = EIO;
            return -1;
        }
        return SystemCalls::sync(fd);
    }
};

} // namespace

TEST(AuditLogFile, AFailedWriteIsCutBackAndTheLogStaysReadable)
{
    TestHome home;
    const auto disk = std::make_shared<FailingDisk>();
    AuditLogger logger({.homeURL = home.path(), .fileManager = std::make_shared<FileManager>(disk)});
    const AuditLogEntry first = recordOne(logger);
    const QByteArray before = contents(logger.logFileURL());

    disk->fault = FailingDisk::Fault::shortWrite;
    const QString cut = failure([&] { recordOne(logger, {home.path(QStringLiteral(".cache/a"))}); });
    EXPECT_TRUE(cut.startsWith(QStringLiteral("Failed to write audit log entry: Failed to append data to log file: "
                                              "Only ")))
        << cut.toStdString();
    EXPECT_TRUE(cut.endsWith(QStringLiteral(" bytes could be written.")));
    EXPECT_EQ(contents(logger.logFileURL()), before);

    disk->fault = FailingDisk::Fault::noSpace;
    EXPECT_EQ(failure([&] { recordOne(logger); }),
              QStringLiteral("Failed to write audit log entry: Failed to append data to log file: No space left on "
                             "device"));
    EXPECT_EQ(contents(logger.logFileURL()), before);
    EXPECT_EQ(logger.lastHash(), first.rollingHash);

    // When only the forcing to disk fails, the line is there.
    disk->fault = FailingDisk::Fault::syncFailure;
    EXPECT_EQ(failure([&] { recordOne(logger); }),
              QStringLiteral("Failed to write audit log entry: Failed to append data to log file: Input/output error"));
    disk->fault = FailingDisk::Fault::none;
    recordOne(logger);
    EXPECT_EQ(logger.verifyIntegrity(), (AuditVerificationResult{true, 3, std::nullopt, std::nullopt}));
}

TEST(AuditLogFile, OnlyARegularFileIsALog)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    const QString log = logger.logFileURL();
    const QString outside = home.writeFile(QStringLiteral("elsewhere/audit.jsonl"), QByteArray("keep\n"));
    const QString readPrefix = QStringLiteral("Failed to read audit log file: Could not read audit log: ");
    const QString writePrefix = QStringLiteral("Failed to write audit log entry: ");
    const QString linkText = QStringLiteral("The file is a symbolic link, which is never followed.");
    const QString notFileText = QStringLiteral("The file is not a regular file.");

    home.makeSymbolicLink(QStringLiteral(".kestrow/audit.jsonl"), outside);
    EXPECT_EQ(failure([&] { recordOne(logger); }), writePrefix + linkText);
    EXPECT_EQ(failure([&] { logger.checkWritable(); }), writePrefix + linkText);
    EXPECT_EQ(failure([&] { (void)logger.readEntries(); }), readPrefix + linkText);
    EXPECT_EQ(contents(outside), "keep\n");

    // A link to nothing is not followed to make its target either.
    QFile::remove(log);
    home.makeSymbolicLink(QStringLiteral(".kestrow/audit.jsonl"), home.path(QStringLiteral("made")));
    EXPECT_EQ(failure([&] { recordOne(logger); }), writePrefix + linkText);
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral("made"))));

    QFile::remove(log);
    home.makeDirectory(QStringLiteral(".kestrow/audit.jsonl"));
    EXPECT_EQ(failure([&] { recordOne(logger); }), writePrefix + notFileText);
    EXPECT_EQ(failure([&] { (void)logger.verifyIntegrity(); }), readPrefix + notFileText);

    // A FIFO with no writer would block an open that waits; the log does not wait.
    QDir(log).removeRecursively();
    ASSERT_EQ(::mkfifo(QFile::encodeName(log).constData(), 0600), 0);
    EXPECT_EQ(failure([&] { recordOne(logger); }), writePrefix + notFileText);
    EXPECT_EQ(failure([&] { (void)logger.readEntries(); }), readPrefix + notFileText);
}

TEST(AuditLogFile, CheckingWritabilityWritesNothing)
{
    TestHome home;
    AuditLogger logger({.homeURL = home.path()});
    logger.checkWritable();
    EXPECT_EQ(QFileInfo(logger.logFileURL()).size(), 0);
    EXPECT_EQ(QFileInfo(home.path(QStringLiteral(".kestrow"))).permissions() & 0x7777,
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser |
                  QFile::ExeUser);
    recordOne(logger);
    const QByteArray broken = contents(logger.logFileURL()) + "{\"cut\n";
    overwrite(logger.logFileURL(), broken);
    EXPECT_TRUE(
        failure([&] { logger.checkWritable(); }).startsWith(QStringLiteral("Failed to parse audit log at line 2: ")));
    EXPECT_EQ(contents(logger.logFileURL()), broken);
}

TEST(AuditLogFile, LoggersOfOneFileTakeTurns)
{
    TestHome home;
    constexpr int writers = 4;
    constexpr int linesEach = 25;
    std::vector<std::thread> threads;
    for (int w = 0; w < writers; ++w) {
        threads.emplace_back([&] {
            AuditLogger logger({.homeURL = home.path()}); // its own descriptor, its own lock
            for (int i = 0; i < linesEach; ++i)
                recordOne(logger);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(AuditLogger({.homeURL = home.path()}).verifyIntegrity(),
              (AuditVerificationResult{true, writers * linesEach, std::nullopt, std::nullopt}));
}

TEST(AuditLogFile, LinesAreCutAtEveryBreakAcrossReads)
{
    TestHome home;
    AuditLogger writer({.logFileURL = home.path(QStringLiteral("first.jsonl"))});
    const std::vector<AuditLogEntry> entries{
        recordOne(writer),
        recordOne(writer, {home.path(QStringLiteral(".cache/")) + QString(100000, QLatin1Char('x'))}),
        recordOne(writer)};
    const QByteArrayList lines = contents(writer.logFileURL()).split('\n');

    // A byte order mark first; the first break (LS, three bytes) straddles the end of the
    // first 64 KiB read; a line longer than a read; CR LF, NEL, VT and FF between lines.
    QByteArray text = "\xef\xbb\xbf" + lines[0];
    text += QByteArray(65535 - text.size(), ' ');
    text += "\xe2\x80\xa8" + lines[1] + "\r\n\xc2\x85\x0b\x0c" + lines[2];
    AuditLogger logger({.homeURL = home.path()});
    home.writeFile(QStringLiteral(".kestrow/audit.jsonl"), text);
    EXPECT_EQ(logger.readEntries(), entries);

    // The last line was left unclosed: the next one still starts a line of its own.
    recordOne(logger);
    EXPECT_EQ(logger.verifyIntegrity(), (AuditVerificationResult{true, 4, std::nullopt, std::nullopt}));

    // Text that is not UTF-8 anywhere outweighs an undecodable line before it.
    overwrite(logger.logFileURL(), lines[0] + "\n{\n" + QByteArray(70000, ' ') + "\xff\n");
    EXPECT_EQ(failure([&] { (void)logger.verifyIntegrity(); }),
              QStringLiteral("Failed to read audit log file: Could not read audit log: The file is not valid UTF-8 "
                             "text."));
}
