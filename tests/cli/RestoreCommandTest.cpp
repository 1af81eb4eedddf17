#include "KestrowProcess.h"
#include "TestHome.h"
#include "TrashNote.h"

#include "cleanup/TrashLedger.h"
#include "platform/FileManager.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace kestrow::test;

namespace {

KestrowRun runIn(const TestHome& home, QStringList arguments)
{
    arguments << QStringLiteral("--home") << home.path();
    return runKestrow(arguments);
}

QJsonObject jsonOf(const KestrowRun& run)
{
    return QJsonDocument::fromJson(run.out.toUtf8()).object();
}

// The audit chain holds and has `lines` lines.
void expectChain(const TestHome& home, int lines)
{
    const KestrowRun verified =
        runIn(home, {QStringLiteral("audit"), QStringLiteral("verify"), QStringLiteral("--json")});
    EXPECT_EQ(verified.exitCode, 0) << verified.out.toStdString();
    EXPECT_EQ(jsonOf(verified)[QStringLiteral("totalEntries")].toInt(), lines);
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<absent>");
}

} // namespace

TEST(RestoreCommand, PutsARunBackByIdOrAPathBackByItsPathAndRefusesWhatCannotComeBack)
{
    TestHome home;
    const QString blob = home.writeFile(QStringLiteral(".cache/app/blob"), QByteArray("blob"));
    const QString other = home.writeFile(QStringLiteral(".cache/other/x"), QByteArray("x"));
    const KestrowRun clean =
        runIn(home, {QStringLiteral("clean"), QStringLiteral("--json"), home.path(QStringLiteral(".cache/app")),
                     home.path(QStringLiteral(".cache/other"))});
    ASSERT_EQ(clean.exitCode, 0) << clean.err.toStdString();
    const QString id = jsonOf(clean)[QStringLiteral("operationId")].toString();

    const KestrowRun dry = runIn(home, {QStringLiteral("restore"), id, QStringLiteral("--dry-run")});
    EXPECT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    EXPECT_TRUE(dry.out.contains(QStringLiteral("Dry run: 2 items (8 KB) would go back from the Trash.")))
        << dry.out.toStdString();
    EXPECT_FALSE(QFileInfo::exists(blob));
    expectChain(home, 1);

    const KestrowRun restored = runIn(home, {QStringLiteral("restore"), id.toLower(), QStringLiteral("--json")});
    EXPECT_EQ(restored.exitCode, 0) << restored.err.toStdString();
    const QJsonArray records = jsonOf(restored)[QStringLiteral("records")].toArray();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0][QStringLiteral("status")].toString(), QStringLiteral("SUCCESS"));
    EXPECT_EQ(records[0][QStringLiteral("originalPath")].toString(), home.path(QStringLiteral(".cache/app")));
    EXPECT_EQ(records[0][QStringLiteral("sourcePath")].toString(), home.trashFilesFolder() + QStringLiteral("/app"));
    EXPECT_EQ(contentOf(blob), "blob");
    EXPECT_EQ(contentOf(other), "x");
    expectChain(home, 2);
    const KestrowRun log = runIn(home, {QStringLiteral("audit"), QStringLiteral("log")});
    EXPECT_TRUE(log.out.contains(QStringLiteral("  restore     2 items"))) << log.out.toStdString();

    // Once more: nothing of the run is left in the Trash.
    const KestrowRun again = runIn(home, {QStringLiteral("restore"), id});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.out.contains(QStringLiteral("nothing that Kestrow moved to the Trash from there is left in it")));
    expectChain(home, 3);

    const KestrowRun unknown =
        runIn(home, {QStringLiteral("restore"), QStringLiteral("00000000-0000-0000-0000-000000000001")});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("no run 00000000-0000-0000-0000-000000000001 in the audit log")))
        << unknown.err.toStdString();

    // By path, "~" against the home: the newest entry from there comes back.
    ASSERT_EQ(runIn(home, {QStringLiteral("clean"), blob}).exitCode, 0);
    const KestrowRun byPath = runIn(home, {QStringLiteral("restore"), QStringLiteral("~/.cache/app/blob")});
    EXPECT_EQ(byPath.exitCode, 0) << byPath.out.toStdString() << byPath.err.toStdString();
    EXPECT_TRUE(byPath.out.contains(QStringLiteral("Put back 1 item")));
    EXPECT_EQ(contentOf(blob), "blob");

    const KestrowRun purge = runIn(home, {QStringLiteral("clean"), QStringLiteral("--permanent"),
                                          QStringLiteral("--yes"), QStringLiteral("--json"), other});
    ASSERT_EQ(purge.exitCode, 0);
    const KestrowRun purged =
        runIn(home, {QStringLiteral("restore"), jsonOf(purge)[QStringLiteral("operationId")].toString()});
    EXPECT_EQ(purged.exitCode, 2);
    EXPECT_TRUE(
        purged.err.contains(QStringLiteral("a purge: what it deleted is gone for good and cannot be restored.")))
        << purged.err.toStdString();
    expectChain(home, 6);
}

TEST(TrashCommand, ListsKestrowsRunsAndEmptiesThemWithoutTouchingOtherProgramsItems)
{
    TestHome home;
    const QString ours = home.writeFile(QStringLiteral(".cache/app/blob"), 5000);
    ASSERT_EQ(runIn(home, {QStringLiteral("clean"), ours}).exitCode, 0);
    ASSERT_TRUE(kestrow::FileManager()
                    .trashItem(home.writeFile(QStringLiteral(".cache/theirs"), QByteArray("theirs")))
                    .succeeded);

    // The line a run on a terminal ends with counts only Kestrow's part.
    const auto log = std::make_shared<kestrow::AuditLogger>(kestrow::AuditLogger::Options{.homeURL = home.path()});
    EXPECT_EQ(
        kestrow::cli::trashNoteText(kestrow::TrashLedger({.auditLogger = log}).read()),
        QStringLiteral("The Trash now holds 8 KB from Kestrow's runs; `kestrow trash empty` frees it for good.\n"));

    const KestrowRun list = runIn(home, {QStringLiteral("trash"), QStringLiteral("list")});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_TRUE(list.out.contains(QStringLiteral("    ") + ours + QLatin1Char('\n'))) << list.out.toStdString();
    EXPECT_TRUE(list.out.contains(QStringLiteral("Kestrow's runs: 1 item in the Trash, 8 KB.")));
    EXPECT_TRUE(list.out.contains(QStringLiteral("Other programs' items in the Trash: 1 item (")));
    const QJsonObject listed =
        jsonOf(runIn(home, {QStringLiteral("trash"), QStringLiteral("list"), QStringLiteral("--json")}));
    EXPECT_EQ(listed[QStringLiteral("runs")].toArray().size(), 1);
    EXPECT_EQ(listed[QStringLiteral("otherItemsCount")].toInt(), 1);

    const KestrowRun unconfirmed = runIn(home, {QStringLiteral("trash"), QStringLiteral("empty")});
    EXPECT_EQ(unconfirmed.exitCode, 2);
    EXPECT_TRUE(unconfirmed.err.contains(QStringLiteral("pass --yes to go ahead")));
    const KestrowRun young =
        runIn(home, {QStringLiteral("trash"), QStringLiteral("empty"), QStringLiteral("--older-than"),
                     QStringLiteral("1"), QStringLiteral("--yes")});
    EXPECT_EQ(young.exitCode, 0);
    EXPECT_TRUE(young.out.startsWith(QStringLiteral("Nothing to empty")));
    EXPECT_EQ(runIn(home, {QStringLiteral("trash"), QStringLiteral("empty"), QStringLiteral("--run"),
                           QStringLiteral("nope"), QStringLiteral("--yes")})
                  .exitCode,
              2);
    expectChain(home, 1);

    const KestrowRun emptied = runIn(home, {QStringLiteral("trash"), QStringLiteral("empty"), QStringLiteral("--yes")});
    EXPECT_EQ(emptied.exitCode, 0) << emptied.err.toStdString();
    EXPECT_TRUE(emptied.out.contains(QStringLiteral("Deleted 1 item for good: 8 KB freed.")));
    EXPECT_EQ(QDir(home.trashFilesFolder()).entryList(QDir::Files), QStringList{QStringLiteral("theirs")});
    EXPECT_EQ(QDir(home.trashInfoFolder()).entryList(QDir::Files), QStringList{QStringLiteral("theirs.trashinfo")});
    EXPECT_EQ(contentOf(home.trashFilesFolder() + QStringLiteral("/theirs")), "theirs");
    EXPECT_TRUE(runIn(home, {QStringLiteral("audit"), QStringLiteral("log")}).out.contains(QStringLiteral("  purge ")));
    expectChain(home, 2);
}
