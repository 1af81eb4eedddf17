#include "AwkwardNames.h"
#include "TestHome.h"
#include "TmpfsMount.h"

#include "cleanup/TrashLedger.h"
#include "cleanup/TrashPipeline.h"
#include "cleanup/TrashPipelineError.h"
#include "cleanup/TrashRestorer.h"
#include "platform/NativePath.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kestrow;
using kestrow::test::awkwardNames;
using kestrow::test::TestHome;
using kestrow::test::TmpfsMount;
using kestrow::test::writeRaw;

namespace {

const QString cli = QStringLiteral("cli");

// Names are bytes here: files are read through the raw path.
QByteArray readRaw(const QString& path)
{
    return test::readRaw(NativePath::encode(path));
}

QStringList entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

// A home with its audit log, the pipeline that records in it, and the ledger that reads it.
struct LoggedHome {
    TestHome home;
    std::shared_ptr<AuditLogger> log = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home.path()});
    TrashPipeline pipeline{{.auditLogger = log, .homeURL = home.path()}};

    [[nodiscard]] TrashHoldings holdings() const { return TrashLedger({.auditLogger = log}).read(); }
    [[nodiscard]] bool chainHolds() const { return log->verifyIntegrity().isValid; }
};

std::vector<TrashRestorer::Item> itemsOf(const TrashedRun& run)
{
    std::vector<TrashRestorer::Item> items;
    for (const TrashedItem& item : run.items)
        items.push_back({item.entry.originalPath, item.entry});
    return items;
}

// Fails every rename with a chosen errno, as a foreign mount or a refusing folder would.
class FailingRename : public SystemCalls {
public:
    int renameAt(int fromFolder, const char* from, int toFolder, const char* to, bool noReplace) const override
    {
        if (renameError == 0)
            return SystemCalls::renameAt(fromFolder, from, toFolder, to, noReplace);
        errno = renameError;
        return -1;
    }
    int renameError = 0;
};

} // namespace

TEST(TrashRestorer, EveryAwkwardNameAndATreeComeBackByteForByteAndTheRestoreIsLogged)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    const QByteArray folder = NativePath::encode(home.makeDirectory(QStringLiteral(".cache/awkward")));
    QStringList paths;
    for (const QByteArray& name : awkwardNames()) {
        writeRaw(folder + '/' + name, "content of " + name);
        paths.append(NativePath::decode(folder + '/' + name));
    }
    home.writeFile(QStringLiteral(".cache/tree/sub/file"), QByteArray("nested"));
    home.makeSymbolicLink(QStringLiteral(".cache/tree/link"), QStringLiteral("sub/file"));
    paths.append(home.path(QStringLiteral(".cache/tree")));
    const TrashSummary moved = logged.pipeline.trash(paths, false, cli);
    ASSERT_EQ(moved.successCount(), paths.size());

    const TrashHoldings before = logged.holdings();
    ASSERT_EQ(before.runs.size(), 1u);
    const TrashedRun& run = before.runs.front();
    EXPECT_EQ(run.items.size(), static_cast<std::size_t>(paths.size()));
    EXPECT_TRUE(run.pathsGone.isEmpty());
    EXPECT_EQ(run.allocatedBytes, moved.totalAllocatedBytesFreed());
    EXPECT_EQ(before.foreignCount, 0);

    const RestoreRun restored = TrashRestorer({.auditLogger = logged.log}).restore(itemsOf(run), false, cli);
    EXPECT_EQ(restored.summary.successCount(), paths.size());
    for (const TrashItemRecord& record : restored.summary.records())
        EXPECT_FALSE(record.errorMessage) << record.errorMessage->toStdString();
    for (const QByteArray& name : awkwardNames())
        EXPECT_EQ(readRaw(NativePath::decode(folder + '/' + name)), "content of " + name);
    EXPECT_EQ(readRaw(home.path(QStringLiteral(".cache/tree/sub/file"))), "nested");
    EXPECT_EQ(QFile::symLinkTarget(home.path(QStringLiteral(".cache/tree/link"))),
              home.path(QStringLiteral(".cache/tree/sub/file")));
    EXPECT_TRUE(entries(home.trashFilesFolder()).isEmpty());
    EXPECT_TRUE(entries(home.trashInfoFolder()).isEmpty());

    const std::vector<AuditLogEntry> lines = logged.log->readEntries();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].operationType, AuditOperationType::restore);
    EXPECT_EQ(lines[1].client, cli);
    EXPECT_EQ(lines[1].itemsCount, paths.size());
    EXPECT_EQ(lines[1].bytesFreed, moved.totalAllocatedBytesFreed());
    EXPECT_EQ(QSet<QString>(lines[1].paths.begin(), lines[1].paths.end()), QSet<QString>(paths.begin(), paths.end()));
    EXPECT_TRUE(logged.chainHolds());
    EXPECT_EQ(logged.holdings().runs.front().pathsGone.size(), paths.size());
}

TEST(TrashRestorer, AnOccupiedPlaceIsNeverReplacedAndBothStay)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    const QString item = home.writeFile(QStringLiteral(".cache/app/blob"), QByteArray("trashed"));
    ASSERT_EQ(logged.pipeline.trash({item}, false, cli).successCount(), 1);
    home.writeFile(QStringLiteral(".cache/app/blob"), QByteArray("newcomer"));
    const TrashHoldings holdings = logged.holdings();
    const TrashEntry entry = holdings.runs.front().items.front().entry;
    const QString expected = QStringLiteral("Could not put \u201c%1\u201d back: something else stands there now and is "
                                            "never replaced. It stays in the Trash as \u201c%2/blob\u201d.")
                                 .arg(item, home.trashFilesFolder());

    const TrashRestorer restorer({.auditLogger = logged.log});
    for (const bool dryRun : {true, false}) {
        const RestoreRun run = restorer.restore({{entry.originalPath, entry}}, dryRun, cli);
        EXPECT_EQ(run.summary.records().front().status, TrashItemStatus::failed);
        EXPECT_EQ(run.summary.records().front().errorMessage, expected);
    }
    EXPECT_EQ(readRaw(item), "newcomer");
    EXPECT_EQ(readRaw(home.trashFilesFolder() + QStringLiteral("/blob")), "trashed");
    EXPECT_EQ(entries(home.trashInfoFolder()), QStringList{QStringLiteral("blob.trashinfo")});

    // Nothing left of an item: a record that says so, and the batch goes on.
    const RestoreRun gone = restorer.restore({{home.path(QStringLiteral(".cache/gone")), std::nullopt}}, false, cli);
    EXPECT_EQ(gone.summary.records().front().errorMessage,
              QStringLiteral("Could not put \u201c%1\u201d back: nothing that Kestrow moved to the Trash from there is "
                             "left in it.")
                  .arg(home.path(QStringLiteral(".cache/gone"))));
    // The dry run wrote nothing; the two failed restores wrote their lines.
    EXPECT_EQ(logged.log->readEntries().size(), 3u);
    EXPECT_TRUE(logged.chainHolds());
}

TEST(TrashRestorer, RefusedOrLinkedWaysBackLeaveTheItemAndItsRecordInTheTrash)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    const QString item = home.writeFile(QStringLiteral(".cache/app/blob"), QByteArray("kept"));
    ASSERT_EQ(logged.pipeline.trash({item}, false, cli).successCount(), 1);
    const TrashEntry entry = logged.holdings().runs.front().items.front().entry;
    const auto calls = std::make_shared<FailingRename>();
    const TrashRestorer restorer({.fileManager = std::make_shared<FileManager>(calls)});
    const auto message = [&] {
        return restorer.restore({{entry.originalPath, entry}}, false, cli).summary.records().front().errorMessage;
    };
    const QString stays = QStringLiteral(" It stays in the Trash as \u201c%1/blob\u201d.").arg(home.trashFilesFolder());

    calls->renameError = EACCES;
    EXPECT_EQ(message(), QStringLiteral("Could not put \u201c%1\u201d back: moving it out of the Trash failed "
                                        "(Permission denied).")
                                 .arg(item) +
                             stays);
    calls->renameError = EINVAL;
    EXPECT_EQ(message(), QStringLiteral("Could not put \u201c%1\u201d back: its file system cannot move an item "
                                        "without replacing what is in the way.")
                                 .arg(item) +
                             stays);

    // The folder it came from is now a link elsewhere: nothing lands there.
    calls->renameError = 0;
    ASSERT_TRUE(QDir(home.path(QStringLiteral(".cache/app"))).removeRecursively());
    const QString elsewhere = home.makeDirectory(QStringLiteral("elsewhere"));
    home.makeSymbolicLink(QStringLiteral(".cache/app"), elsewhere);
    EXPECT_EQ(message(), QStringLiteral("Could not put \u201c%1\u201d back: the folder it came from cannot be opened "
                                        "or made (a folder on its path is a symbolic link or not a folder).")
                                 .arg(item) +
                             stays);
    EXPECT_TRUE(entries(elsewhere).isEmpty());
    EXPECT_EQ(readRaw(home.trashFilesFolder() + QStringLiteral("/blob")), "kept");
    EXPECT_EQ(entries(home.trashInfoFolder()), QStringList{QStringLiteral("blob.trashinfo")});

    // With the folders gone altogether, they are made again on the way back.
    ASSERT_TRUE(QFile::remove(home.path(QStringLiteral(".cache/app"))));
    ASSERT_TRUE(QDir(home.path(QStringLiteral(".cache"))).removeRecursively());
    EXPECT_FALSE(message());
    EXPECT_EQ(readRaw(item), "kept");
}

TEST(TrashLedger, EmptyingDeletesOnlyWhatKestrowsRunsPutInTheTrash)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    const QString ours = home.writeFile(QStringLiteral(".cache/app/blob"), QByteArray("ours"));
    ASSERT_EQ(logged.pipeline.trash({ours}, false, cli).successCount(), 1);
    // Another program trashed a file of the same path long ago, and another just now.
    writeRaw(NativePath::encode(home.trashFilesFolder()) + "/blob.old", "theirs, old");
    writeRaw(NativePath::encode(home.trashInfoFolder()) + "/blob.old.trashinfo",
             "[Trash Info]\nPath=" + NativePath::encode(ours) + "\nDeletionDate=2001-01-01T00:00:00\n");
    ASSERT_TRUE(
        FileManager().trashItem(home.writeFile(QStringLiteral(".cache/other"), QByteArray("theirs"))).succeeded);
    const QStringList infoBefore = entries(home.trashInfoFolder());

    const TrashHoldings holdings = logged.holdings();
    ASSERT_EQ(holdings.itemsCount(), 1);
    EXPECT_EQ(holdings.runs.front().items.front().entry.filePath(), home.trashFilesFolder() + QStringLiteral("/blob"));
    EXPECT_EQ(holdings.foreignCount, 2);

    std::vector<TrashEntry> ourEntries{holdings.runs.front().items.front().entry};
    EXPECT_THROW((void)logged.pipeline.purgeTrashEntries(ourEntries, false, cli), TrashPipelineError);
    EXPECT_THROW((void)logged.pipeline.purgeTrashEntries({}, true, cli), TrashPipelineError);
    const TrashSummary purged = logged.pipeline.purgeTrashEntries(ourEntries, true, cli);
    EXPECT_EQ(purged.successCount(), 1);
    EXPECT_EQ(purged.totalAllocatedBytesFreed(), holdings.allocatedBytes());

    EXPECT_EQ(entries(home.trashFilesFolder()), (QStringList{QStringLiteral("blob.old"), QStringLiteral("other")}));
    EXPECT_EQ(entries(home.trashInfoFolder()),
              (QStringList{QStringLiteral("blob.old.trashinfo"), QStringLiteral("other.trashinfo")}));
    EXPECT_EQ(readRaw(home.trashFilesFolder() + QStringLiteral("/blob.old")), "theirs, old");
    EXPECT_EQ(readRaw(home.trashFilesFolder() + QStringLiteral("/other")), "theirs");
    const AuditLogEntry last = logged.log->readEntries().back();
    EXPECT_EQ(last.operationType, AuditOperationType::purge);
    EXPECT_EQ(last.paths, QStringList{home.trashFilesFolder() + QStringLiteral("/blob")});
    EXPECT_TRUE(logged.chainHolds());
    EXPECT_EQ(logged.holdings().foreignCount, 2);
}

TEST(TrashLedger, HardLinksOutsideWhatMovedAreToldAsBytesThatWillNotComeBack)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    home.writeFile(QStringLiteral(".cache/a/shared"), 100000);
    home.makeHardLink(QStringLiteral("Projects/kept"), QStringLiteral(".cache/a/shared"));
    home.writeFile(QStringLiteral(".cache/a/pair"), 50000);
    home.makeHardLink(QStringLiteral(".cache/a/pair2"), QStringLiteral(".cache/a/pair"));
    ASSERT_EQ(logged.pipeline.trash({home.path(QStringLiteral(".cache/a"))}, false, cli).successCount(), 1);

    const TrashedRun run = logged.holdings().runs.front();
    const auto allocated = [&](const QString& relative) {
        struct stat info {};
        ::lstat(NativePath::encode(home.path(relative)).constData(), &info);
        return static_cast<std::int64_t>(info.st_blocks) * 512;
    };
    EXPECT_EQ(run.bytesHeldElsewhere, allocated(QStringLiteral("Projects/kept")));
}

TEST(TrashRestorer, ItemsOnAnotherMountComeBackFromTheTrashAtItsTop)
{
    LoggedHome logged;
    const TestHome& home = logged.home;
    const QString top = home.makeDirectory(QStringLiteral("volume"));
    const TmpfsMount disk(top, "size=4m");
    if (!disk.isMounted())
        GTEST_SKIP() << disk.error().toStdString();
    const QString item = home.writeFile(QStringLiteral("volume/sub/item"), QByteArray("far"));
    ASSERT_EQ(logged.pipeline.trash({item}, false, cli).successCount(), 1);

    const TrashHoldings holdings = logged.holdings();
    ASSERT_EQ(holdings.itemsCount(), 1);
    const TrashEntry& entry = holdings.runs.front().items.front().entry;
    EXPECT_EQ(entry.filePath(), top + QStringLiteral("/.Trash-%1/files/item").arg(::getuid()));
    EXPECT_EQ(entry.originalPath, item);
    EXPECT_EQ(TrashRestorer().restore(itemsOf(holdings.runs.front()), false, cli).summary.successCount(), 1);
    EXPECT_EQ(readRaw(item), "far");
    EXPECT_TRUE(entries(top + QStringLiteral("/.Trash-%1/info").arg(::getuid())).isEmpty());
}
