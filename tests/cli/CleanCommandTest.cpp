#include "KestrowProcess.h"
#include "LoggedTrashRun.h"
#include "TestHome.h"

#include "cleanup/AuditLogger.h"
#include "platform/FileManager.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <vector>

using namespace kestrow::test;

namespace {

QStringList withHome(const TestHome& home, QStringList arguments)
{
    arguments << QStringLiteral("--home") << home.path();
    return arguments;
}

} // namespace

TEST(CleanCommand, DryRunThenTrashThenRefusedPurge)
{
    TestHome home;
    const QString cache = home.writeFile(QStringLiteral(".cache/app/blob"), 5000);
    const QString secret = home.writeFile(QStringLiteral(".ssh/id_ed25519"), 400);

    const KestrowRun dry =
        runKestrow(withHome(home, {QStringLiteral("clean"), QStringLiteral("--dry-run"), QStringLiteral("--json"),
                                   home.path(QStringLiteral(".cache/app")), secret}));
    EXPECT_EQ(dry.exitCode, 1) << "one item failed";
    EXPECT_TRUE(dry.out.startsWith(QStringLiteral("{\n  \"operationId\" : \"")));
    EXPECT_TRUE(dry.out.contains(QStringLiteral("\"isDryRun\" : true")));
    EXPECT_TRUE(dry.out.contains(QStringLiteral("\"status\" : \"SIMULATED\"")));
    EXPECT_TRUE(dry.out.contains(QStringLiteral("targets protected user directory '.ssh'")));
    EXPECT_TRUE(QFileInfo::exists(cache));

    const KestrowRun moved = runKestrow(withHome(home, {QStringLiteral("clean"), QStringLiteral("~/.cache/app")}));
    EXPECT_EQ(moved.exitCode, 0) << moved.err.toStdString();
    EXPECT_TRUE(moved.out.contains(QStringLiteral("Moved 1 item to the Trash: 8 KB freed.")));
    EXPECT_TRUE(QFileInfo::exists(home.trashFilesFolder() + QStringLiteral("/app/blob")));
    EXPECT_FALSE(QFileInfo::exists(cache));

    const KestrowRun unconfirmed =
        runKestrow(withHome(home, {QStringLiteral("clean"), QStringLiteral("--permanent"), secret}));
    EXPECT_EQ(unconfirmed.exitCode, 2);
    EXPECT_TRUE(unconfirmed.err.contains(QStringLiteral("add --yes to confirm")));
    EXPECT_TRUE(QFileInfo::exists(secret));

    const KestrowRun log = runKestrow(withHome(home, {QStringLiteral("audit"), QStringLiteral("log")}));
    EXPECT_TRUE(log.out.contains(QStringLiteral("dry_run")));
    EXPECT_TRUE(log.out.contains(QStringLiteral("  trash ")));
    const KestrowRun verified =
        runKestrow(withHome(home, {QStringLiteral("audit"), QStringLiteral("verify"), QStringLiteral("--json")}));
    EXPECT_EQ(verified.exitCode, 0);
    EXPECT_EQ(verified.out, QStringLiteral("{\n  \"isValid\" : true,\n  \"totalEntries\" : 2\n}\n"));
}

TEST(CleanCommand, KilledMidRunLeavesEveryItemWholeAndTheLogVerifiable)
{
    TestHome home;
    QStringList arguments = withHome(home, {QStringLiteral("clean")});
    QStringList items;
    for (int i = 0; i < 1000; ++i) {
        items.append(home.writeFile(QStringLiteral(".cache/batch/item%1").arg(i), 100));
        arguments.append(items.last());
    }
    ASSERT_EQ(
        runKestrow(withHome(home, {QStringLiteral("clean"), home.writeFile(QStringLiteral(".cache/first/x"), 10)}))
            .exitCode,
        0);

    KestrowProcess child(arguments);
    QElapsedTimer waited;
    waited.start();
    while (QDir(home.trashFilesFolder()).count() < 2 + 50 && waited.elapsed() < 60000)
        QThread::msleep(2);
    EXPECT_TRUE(child.kill()) << "the run was over before it was killed";

    int inTrash = 0;
    for (const QString& item : items) {
        const QFileInfo trashed(home.trashFilesFolder() + QLatin1Char('/') + QFileInfo(item).fileName());
        EXPECT_NE(QFileInfo::exists(item), trashed.exists()) << item.toStdString();
        if (trashed.exists()) {
            EXPECT_EQ(trashed.size(), 100);
            ++inTrash;
        }
    }
    EXPECT_GT(inTrash, 0);
    EXPECT_LT(inTrash, items.size()) << "the run ended before it could be stopped";

    const KestrowRun afterCrash = runKestrow(withHome(home, {QStringLiteral("audit"), QStringLiteral("verify")}));
    EXPECT_EQ(afterCrash.exitCode, 0) << afterCrash.out.toStdString();
    EXPECT_TRUE(afterCrash.out.contains(QStringLiteral("1 entries")));
    const KestrowRun rest =
        runKestrow(withHome(home, {QStringLiteral("clean"), home.path(QStringLiteral(".cache/batch"))}));
    EXPECT_EQ(rest.exitCode, 0);
    EXPECT_TRUE(runKestrow(withHome(home, {QStringLiteral("audit"), QStringLiteral("verify")}))
                    .out.contains(QStringLiteral("2 entries")));
}

TEST(SweepCommand, AsksForConsentThenMovesOnlySafeItems)
{
    TestHome home;
    const QString wheel = home.writeFile(QStringLiteral(".cache/uv/wheels/a.whl"), 5000);

    const KestrowRun refused = runKestrow(withHome(home, {QStringLiteral("sweep")}));
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_TRUE(refused.err.contains(QStringLiteral("pass --yes to go ahead, or --dry-run")));

    const KestrowRun dry = runKestrow(withHome(home, {QStringLiteral("sweep"), QStringLiteral("--dry-run")}));
    EXPECT_EQ(dry.exitCode, 0);
    EXPECT_TRUE(dry.out.contains(home.path(QStringLiteral(".cache/uv/wheels"))));
    EXPECT_TRUE(dry.out.contains(QStringLiteral("would go to the Trash. Nothing was moved.")));
    EXPECT_TRUE(QFileInfo::exists(wheel));

    const KestrowRun swept = runKestrow(withHome(home, {QStringLiteral("sweep"), QStringLiteral("--yes")}));
    EXPECT_TRUE(swept.out.contains(QStringLiteral("Moved 1 item to the Trash: 8 KB freed.")))
        << swept.out.toStdString();
    EXPECT_TRUE(QFileInfo::exists(home.trashFilesFolder() + QStringLiteral("/wheels/a.whl")));
    EXPECT_FALSE(QFileInfo::exists(wheel));
}

TEST(AuditCommand, ReportsTheBrokenLineAndAnUnreadableLog)
{
    TestHome home;
    for (const char* name : {".cache/a/x", ".cache/b/x"}) {
        const QStringList arguments{QStringLiteral("clean"), QStringLiteral("--dry-run"),
                                    home.writeFile(QLatin1String(name), 10)};
        ASSERT_EQ(runKestrow(withHome(home, arguments)).exitCode, 0);
    }
    const QString log = home.path(QStringLiteral(".kestrow/audit.jsonl"));
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray text = file.readAll();
    ASSERT_TRUE(text.contains("\\/a\\/x\"]"));
    text.replace("\\/a\\/x\"]", "\\/c\\/x\"]");
    file.resize(0);
    file.write(text);
    file.close();

    const KestrowRun broken =
        runKestrow(withHome(home, {QStringLiteral("audit"), QStringLiteral("verify"), QStringLiteral("--json")}));
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(broken.out.contains(QStringLiteral("\"tamperedLineIndex\" : 0")));
    EXPECT_TRUE(broken.out.contains(QStringLiteral("Rolling hash mismatch at line 1. Content was modified.")));

    file.open(QIODevice::Append);
    file.write("not json\n");
    file.close();
    for (const char* sub : {"verify", "log"}) {
        const KestrowRun unreadable = runKestrow(withHome(home, {QStringLiteral("audit"), QLatin1String(sub)}));
        EXPECT_EQ(unreadable.exitCode, 1);
        EXPECT_TRUE(unreadable.err.startsWith(QStringLiteral("kestrow: Failed to parse audit log at line 3: ")))
            << unreadable.err.toStdString();
    }
}

TEST(CleanCommand, ConcurrentRunsChainEveryLine)
{
    TestHome home;
    const QString log = home.path(QStringLiteral(".kestrow/audit.jsonl"));
    qsizetype lines = 0;
    // Twenty pairs each on a log that does not exist yet, then twenty on the one that grew.
    for (int pair = 0; pair < 40; ++pair) {
        if (pair < 20) {
            QDir(home.path(QStringLiteral(".kestrow"))).removeRecursively();
            lines = 0;
        }
        QStringList items;
        std::vector<std::unique_ptr<KestrowProcess>> runs;
        for (const char* side : {"a", "b"}) {
            items.append(home.writeFile(QStringLiteral(".cache/p%1%2/x").arg(pair).arg(QLatin1String(side)), 10));
            runs.push_back(std::make_unique<KestrowProcess>(withHome(home, {QStringLiteral("clean"), items.last()})));
        }
        for (const auto& run : runs) {
            const KestrowRun ended = run->finish(30000);
            EXPECT_EQ(ended.exitCode, 0) << ended.err.toStdString();
        }
        lines += 2;
        QFile file(log);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        EXPECT_EQ(text.count('\n'), lines) << "pair " << pair;
        for (const QString& item : items)
            EXPECT_TRUE(text.contains(item.toUtf8().replace("/", "\\/"))) << "pair " << pair;
        const kestrow::AuditVerificationResult verified =
            kestrow::AuditLogger({.homeURL = home.path()}).verifyIntegrity();
        EXPECT_TRUE(verified.isValid) << "pair " << pair << ": "
                                      << verified.failureReason.value_or(QString()).toStdString();
    }
}

TEST(CleanCommand, ALogThatCannotTakeALineStopsTheRunBeforeItStarts)
{
    TestHome home;
    const QString item = home.writeFile(QStringLiteral(".cache/app/blob"), 100);
    const QString log = home.writeFile(QStringLiteral(".kestrow/audit.jsonl"), QByteArray("{\"not\":\"an entry\"}\n"));
    const QString refusal = QStringLiteral("kestrow: the audit log %1 cannot take a line: ").arg(log);
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("clean"), item},
          QStringList{QStringLiteral("clean"), QStringLiteral("--dry-run"), QStringLiteral("--json"), item},
          QStringList{QStringLiteral("sweep"), QStringLiteral("--yes")}}) {
        const KestrowRun run = runKestrow(withHome(home, arguments));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.err.startsWith(refusal + QStringLiteral("Failed to parse audit log at line 1: ")))
            << run.err.toStdString();
        EXPECT_TRUE(run.err.endsWith(QStringLiteral(". Nothing was cleaned. Run `kestrow audit verify` to see the "
                                                    "broken line, or move the file away to start a new log.\n")));
        EXPECT_TRUE(run.out.isEmpty());
    }
    EXPECT_TRUE(QFileInfo::exists(item));

    // A link in the log's place is not followed, and what it leads to is left alone.
    const QString elsewhere = home.writeFile(QStringLiteral("elsewhere/audit.jsonl"), QByteArray());
    QFile::remove(log);
    home.makeSymbolicLink(QStringLiteral(".kestrow/audit.jsonl"), elsewhere);
    const KestrowRun linked = runKestrow(withHome(home, {QStringLiteral("clean"), item}));
    EXPECT_EQ(linked.exitCode, 1);
    EXPECT_EQ(linked.err, refusal + QStringLiteral("Failed to write audit log entry: The file is a symbolic link, "
                                                   "which is never followed. Nothing was cleaned. The log must be a "
                                                   "regular file in a folder that can be written to; move away what "
                                                   "is in its place to start a new log.\n"));
    EXPECT_TRUE(QFileInfo::exists(item));
    EXPECT_EQ(QFileInfo(elsewhere).size(), 0);
}

namespace {

// A disk that is full by the time the run's line is written.
class FullDisk : public kestrow::SystemCalls {
public:
    ssize_t write(int, const void*, size_t) const override
    {
        errno = ENOSPC;
        return -1;
    }
};

} // namespace

TEST(CleanCommand, ALineTheLogCannotTakeAfterTheRunFailsTheCommand)
{
    TestHome home;
    const QString item = home.writeFile(QStringLiteral(".cache/app/blob"), 100);
    const kestrow::cli::LoggedTrashRun run(home.path(),
                                           std::make_shared<kestrow::FileManager>(std::make_shared<FullDisk>()));
    ASSERT_TRUE(run.logCanTakeALine());

    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = run.report(run.pipeline().trash({item}, false, QStringLiteral("cli")), true);
    const QString out = QString::fromStdString(testing::internal::GetCapturedStdout());
    const QString err = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(out.startsWith(QStringLiteral("{\n  \"operationId\" : \""))) << "the summary stays on standard output";
    EXPECT_TRUE(out.contains(QStringLiteral("\"status\" : \"SUCCESS\"")));
    EXPECT_EQ(err, QStringLiteral("kestrow: this run could not be recorded in the audit log %1: Failed to write audit "
                                  "log entry: Failed to append data to log file: No space left on device. What the "
                                  "run did stands; run `kestrow audit verify` to check the log.\n")
                       .arg(home.path(QStringLiteral(".kestrow/audit.jsonl"))));
    EXPECT_FALSE(QFileInfo::exists(item));
}
