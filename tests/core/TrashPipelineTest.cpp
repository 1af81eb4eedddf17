#include "TestHome.h"

#include "cleanup/TrashPipeline.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// A disk whose Trash refuses every item, and which notes any deletion asked of it.
class RefusingTrash : public FileManager {
public:
    FileOperationResult trashItem(const AnchoredItem&) const override
    {
        return {false, std::nullopt, QStringLiteral("Permission denied")};
    }
    FileOperationResult removeItem(const AnchoredItem& item) const override
    {
        removed.append(item.path);
        return FileManager::removeItem(item);
    }
    mutable QStringList removed;
};

std::shared_ptr<AuditLogger> loggerFor(const TestHome& home)
{
    return std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home.path()});
}

std::int64_t allocatedSize(const QString& path)
{
    return FileManager().status(path)->allocatedSize;
}

} // namespace

TEST(TrashPipeline, MixedBatchGivesOneRecordPerPathInOrderAndTrashesInsideTheTestHome)
{
    TestHome home;
    const QString forbidden = home.writeFile(QStringLiteral("Documents/thesis.tex"), 100);
    const QString missing = home.path(QStringLiteral(".cache/gone/x"));
    const QString good = home.makeDirectory(QStringLiteral(".cache/app"));
    const std::int64_t bytes = allocatedSize(home.writeFile(QStringLiteral(".cache/app/a"), 5000)) +
                               allocatedSize(home.writeFile(QStringLiteral(".cache/app/sub/b"), 3000));
    const auto logger = loggerFor(home);
    const TrashPipeline pipeline({.auditLogger = logger, .homeURL = home.path()});

    const TrashSummary summary = pipeline.trash({forbidden, missing, good}, false, QStringLiteral("gui"));
    ASSERT_EQ(summary.totalItemsCount(), 3);
    const auto& records = summary.records();
    EXPECT_EQ(records[0].status, TrashItemStatus::failed);
    EXPECT_EQ(records[0].errorMessage, QStringLiteral("Sandbox violation: Sandbox Violation: Path '") + forbidden +
                                           QStringLiteral("' targets protected user directory 'Documents'."));
    EXPECT_EQ(records[1].errorMessage, QStringLiteral("File does not exist: ") + missing);
    EXPECT_EQ(records[1].fileCount, 1);
    EXPECT_EQ(records[2].status, TrashItemStatus::success);
    EXPECT_EQ(records[2].fileCount, 2);
    EXPECT_EQ(records[2].allocatedBytes, bytes);
    EXPECT_EQ(records[2].logicalBytes, 8000);
    EXPECT_EQ(summary.successCount(), 1);
    EXPECT_EQ(summary.failureCount(), 2);
    EXPECT_EQ(summary.totalAllocatedBytesFreed(), bytes);

    EXPECT_TRUE(QFileInfo::exists(forbidden));
    EXPECT_FALSE(QFileInfo::exists(good));
    EXPECT_EQ(records[2].trashPath, home.trashFilesFolder() + QStringLiteral("/app"));
    EXPECT_TRUE(QFileInfo::exists(home.trashFilesFolder() + QStringLiteral("/app/sub/b")));
    QFile info(home.trashInfoFolder() + QStringLiteral("/app.trashinfo"));
    ASSERT_TRUE(info.open(QIODevice::ReadOnly));
    EXPECT_TRUE(info.readAll().contains(QByteArray("Path=" + QFile::encodeName(good))));

    const std::vector<AuditLogEntry> entries = logger->readEntries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].operationType, AuditOperationType::trash);
    EXPECT_EQ(entries[0].operationId,
              summary.toJson(DateEncoding::iso8601).find(QStringLiteral("operationId"))->toString());
    EXPECT_EQ(entries[0].itemsCount, 1);
    EXPECT_EQ(entries[0].bytesFreed, bytes);
    EXPECT_EQ(entries[0].paths, QStringList{good});
    EXPECT_EQ(entries[0].client, QStringLiteral("gui"));
}

TEST(TrashPipeline, DryRunMeasuresAndTouchesNothing)
{
    TestHome home;
    const QString folder = home.makeDirectory(QStringLiteral(".cache/linked"));
    const std::int64_t fileBytes = allocatedSize(home.writeFile(QStringLiteral(".cache/linked/a"), 5000));
    home.makeHardLink(QStringLiteral(".cache/linked/b"), QStringLiteral(".cache/linked/a"));
    const QString empty = home.makeDirectory(QStringLiteral(".cache/empty"));
    const QString single = home.writeFile(QStringLiteral(".cache/one.bin"), 10);
    const auto logger = loggerFor(home);
    const TrashPipeline pipeline({.auditLogger = logger, .homeURL = home.path()});

    const TrashSummary summary =
        pipeline.trash({folder, empty, single, home.path(QStringLiteral("Library"))}, true, QStringLiteral("mcp"));
    const auto& records = summary.records();
    EXPECT_EQ(records[0].status, TrashItemStatus::simulated);
    EXPECT_EQ(records[0].fileCount, 2); // each name of a linked file counts here
    EXPECT_EQ(records[0].allocatedBytes, 2 * fileBytes);
    EXPECT_EQ(records[1].fileCount, 1);
    EXPECT_EQ(records[1].allocatedBytes, 0);
    EXPECT_EQ(records[2].fileCount, 1);
    EXPECT_EQ(records[2].logicalBytes, 10);
    EXPECT_EQ(records[3].status, TrashItemStatus::failed); // too shallow: a dry run shows real verdicts
    EXPECT_EQ(summary.successCount(), 3);
    EXPECT_EQ(summary.totalAllocatedBytesFreed(), records[0].allocatedBytes + records[2].allocatedBytes);
    EXPECT_FALSE(records[0].trashPath);
    for (const QString& path :
         {QString(folder + QStringLiteral("/a")), QString(folder + QStringLiteral("/b")), empty, single})
        EXPECT_TRUE(QFileInfo::exists(path)) << path.toStdString();
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral(".local/share/Trash"))));

    const AuditLogEntry entry = logger->readEntries().at(0);
    EXPECT_EQ(entry.operationType, AuditOperationType::dryRun);
    EXPECT_EQ(entry.paths, (QStringList{folder, empty, single}));
    EXPECT_TRUE(logger->verifyIntegrity().isValid);
}

TEST(TrashPipeline, RunsThatCannotStartThrowAndLeaveNoLine)
{
    TestHome home;
    const auto logger = loggerFor(home);
    const TrashPipeline pipeline({.auditLogger = logger, .homeURL = home.path()});
    EXPECT_THROW((void)pipeline.trash({}, false, QStringLiteral("gui")), TrashPipelineError);
    try {
        (void)pipeline.purgePermanently({}, false, QStringLiteral("mcp"));
        FAIL();
    } catch (const TrashPipelineError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("Permanent purge was requested without explicit confirmation flag."));
    }
    try {
        (void)pipeline.purgePermanently({}, true, QStringLiteral("mcp"));
        FAIL();
    } catch (const TrashPipelineError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("No target items provided for cleanup operation."));
    }
    EXPECT_FALSE(QFileInfo::exists(logger->logFileURL()));
}

TEST(TrashPipeline, PurgeDeletesWithoutFollowingLinks)
{
    TestHome home;
    const QString outside = home.writeFile(QStringLiteral("projects/keep.txt"), 100);
    const QString folder = home.makeDirectory(QStringLiteral(".cache/build"));
    home.writeFile(QStringLiteral(".cache/build/deep/er/x.o"), 4000);
    home.makeSymbolicLink(QStringLiteral(".cache/build/link-to-projects"), home.path(QStringLiteral("projects")));
    const auto logger = loggerFor(home);
    const TrashPipeline pipeline({.auditLogger = logger, .homeURL = home.path()});

    const TrashSummary summary = pipeline.purgePermanently({folder}, true, QStringLiteral("mcp"));
    EXPECT_TRUE(summary.isPermanentPurge());
    EXPECT_EQ(summary.records()[0].status, TrashItemStatus::success);
    EXPECT_FALSE(summary.records()[0].trashPath);
    EXPECT_EQ(summary.records()[0].fileCount, 1);
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_TRUE(QFileInfo::exists(outside));
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral(".local/share/Trash"))));
    EXPECT_EQ(logger->readEntries().at(0).operationType, AuditOperationType::purge);
}

TEST(TrashPipeline, RefusedTrashNeverFallsBackAndAnUnwritableLogChangesNothing)
{
    TestHome home;
    const QString item = home.writeFile(QStringLiteral(".cache/locked/file"), 5000);
    const auto disk = std::make_shared<RefusingTrash>();
    // A log whose folder is a regular file cannot be written, not even by root.
    const QString plain = home.writeFile(QStringLiteral("plain"), 1);
    const auto logger =
        std::make_shared<AuditLogger>(AuditLogger::Options{.logFileURL = plain + QStringLiteral("/audit.jsonl")});
    const TrashPipeline pipeline({.fileManager = disk, .auditLogger = logger, .homeURL = home.path()});

    const TrashSummary summary = pipeline.trash({item}, false, QStringLiteral("gui"));
    const TrashItemRecord& record = summary.records()[0];
    EXPECT_EQ(record.status, TrashItemStatus::failed);
    EXPECT_EQ(record.errorMessage, QStringLiteral("Permission denied"));
    EXPECT_EQ(record.logicalBytes, 5000); // measured before the attempt, kept, not counted
    EXPECT_EQ(summary.totalAllocatedBytesFreed(), 0);
    EXPECT_EQ(summary.failureCount(), 1);
    EXPECT_TRUE(disk->removed.isEmpty());
    EXPECT_TRUE(QFileInfo::exists(item));

    const TrashSummary dry = pipeline.trash({item}, true, QStringLiteral("gui"));
    EXPECT_EQ(dry.successCount(), 1);
    EXPECT_EQ(dry.totalLogicalBytesFreed(), 5000);
}

TEST(TrashPipeline, ATrashThatCannotBeSetUpLeavesTheItemInPlace)
{
    TestHome home;
    const QString item = home.writeFile(QStringLiteral(".cache/app/blob"), 100);
    // The data folder the home Trash lives in sits below a regular file: it cannot exist.
    const QString data = home.writeFile(QStringLiteral("plain"), 1) + QStringLiteral("/share");
    qputenv("XDG_DATA_HOME", QFile::encodeName(data));
    const QString workingFolder = QDir::currentPath();
    QDir::setCurrent(home.makeDirectory(QStringLiteral("work")));

    const TrashSummary summary = TrashPipeline({.homeURL = home.path()}).trash({item}, false, QStringLiteral("gui"));
    QDir::setCurrent(workingFolder);
    EXPECT_EQ(summary.records()[0].status, TrashItemStatus::failed);
    EXPECT_EQ(summary.records()[0].errorMessage,
              QStringLiteral("Could not move \u201c%1\u201d to the Trash: the Trash folder %2/Trash cannot be used "
                             "(Not a directory).")
                  .arg(item, data));
    EXPECT_TRUE(QFileInfo::exists(item));
    EXPECT_TRUE(QDir(home.path(QStringLiteral("work"))).isEmpty());
}
