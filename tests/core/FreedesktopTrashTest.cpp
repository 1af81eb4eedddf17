#include "AwkwardNames.h"
#include "TestHome.h"
#include "TmpfsMount.h"

#include "platform/FileManager.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace kestrow;
using kestrow::test::awkwardNames;
using kestrow::test::readRaw;
using kestrow::test::TestHome;
using kestrow::test::TmpfsMount;
using kestrow::test::writeRaw;

namespace {

bool exists(const QByteArray& path)
{
    struct stat info;
    return ::lstat(path.constData(), &info) == 0;
}

QStringList entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

// Percent-decoding byte by byte, as a restorer that keeps bytes does.
QByteArray pathLineOf(const QByteArray& record)
{
    for (const QByteArray& line : record.split('\n'))
        if (line.startsWith("Path="))
            return QByteArray::fromPercentEncoding(line.mid(5));
    return {};
}

// Puts an item back the way a user of Debian's trash-cli does: trash-restore lists what was
// trashed from below the given path and restores the entry whose number it reads.
void restoreWithTrashCli(const QByteArray& path)
{
    QProcess restore;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    restore.setProcessEnvironment(environment);
    restore.start(QStringLiteral("trash-restore"), {NativePath::decode(path)});
    restore.write("0\n");
    restore.closeWriteChannel();
    ASSERT_TRUE(restore.waitForFinished(30000));
    EXPECT_EQ(restore.exitCode(), 0) << restore.readAllStandardError().toStdString();
}

bool trashCliMissing()
{
    return QStandardPaths::findExecutable(QStringLiteral("trash-restore")).isEmpty();
}

// Fails chosen calls with a chosen errno, as a full disk or a foreign mount would.
class FailingCalls : public SystemCalls {
public:
    ssize_t write(int fd, const void* data, size_t size) const override
    {
        if (writeError == 0)
            return SystemCalls::write(fd, data, size);
        errno = writeError;
        return -1;
    }
    int renameAt(int fromFolder, const char* from, int toFolder, const char* to, bool noReplace) const override
    {
        if (renameError == 0)
            return SystemCalls::renameAt(fromFolder, from, toFolder, to, noReplace);
        errno = renameError;
        return -1;
    }
    int writeError = 0;
    int renameError = 0;
};

} // namespace

TEST(FreedesktopTrash, AwkwardNamesComeBackToTheirExactPathsWithTheirContent)
{
    if (trashCliMissing())
        GTEST_SKIP() << "trash-restore (Debian's trash-cli) is not installed";
    TestHome home;
    const QByteArray folder = NativePath::encode(home.makeDirectory(QStringLiteral(".cache/awkward")));
    const FileManager files;
    for (const QByteArray& name : awkwardNames()) {
        // trash-cli reads names as UTF-8; the raw bytes are checked by hand below.
        if (!QByteArrayView(name).isValidUtf8())
            continue;
        SCOPED_TRACE(NativePath::displayText(NativePath::decode(name)).toStdString());
        const QByteArray path = folder + '/' + name;
        writeRaw(path, "content of " + name);
        const FileOperationResult result = files.trashItem(NativePath::decode(path));
        ASSERT_TRUE(result.succeeded) << result.errorDescription.toStdString();
        EXPECT_FALSE(exists(path));
        EXPECT_EQ(readRaw(NativePath::encode(*result.resultingPath)), "content of " + name);
        restoreWithTrashCli(path);
        EXPECT_EQ(readRaw(path), "content of " + name);
    }
    EXPECT_TRUE(entries(home.trashInfoFolder()).isEmpty());

    // The one record checked whole: "%" itself is escaped, so "%41" is not read back as "A".
    const QByteArray pct = folder + "/pct%41";
    const std::time_t before = std::time(nullptr);
    ASSERT_TRUE(files.trashItem(NativePath::decode(pct)).succeeded);
    const std::time_t after = std::time(nullptr);
    const QByteArray record = readRaw(NativePath::encode(home.trashInfoFolder()) + "/pct%41.trashinfo");
    bool matched = false;
    for (std::time_t second = before; second <= after; ++second) {
        char date[32];
        std::tm local{};
        std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", ::localtime_r(&second, &local));
        matched |= record == "[Trash Info]\nPath=" + folder + "/pct%2541\nDeletionDate=" + date + '\n';
    }
    EXPECT_TRUE(matched) << record.toStdString();

    // Bytes that are not UTF-8 are escaped one by one. trash-cli 0.17 decodes them as UTF-8
    // (U+FFFD), so here the path is read back as a byte-keeping restorer reads it.
    const QByteArray raw = folder + "/caf\xE9";
    writeRaw(raw, "latin-1");
    const FileOperationResult result = files.trashItem(NativePath::decode(raw));
    ASSERT_TRUE(result.succeeded) << result.errorDescription.toStdString();
    const QByteArray rawRecord = readRaw(NativePath::encode(home.trashInfoFolder()) + "/caf\xE9.trashinfo");
    EXPECT_TRUE(rawRecord.contains("/caf%E9\n")) << rawRecord.toStdString();
    EXPECT_EQ(pathLineOf(rawRecord), raw);
    EXPECT_EQ(readRaw(NativePath::encode(*result.resultingPath)), "latin-1");
    // The temporary home's clean-up reads names as UTF-8 and would miss these two.
    ::unlink(NativePath::encode(*result.resultingPath).constData());
    ::unlink(QByteArray(NativePath::encode(home.trashInfoFolder()) + "/caf\xE9.trashinfo").constData());
}

TEST(FreedesktopTrash, TakenNamesGetNumberedOnesAndThreadsNeverShareOne)
{
    TestHome home;
    const FileManager files;
    const QString first = home.writeFile(QStringLiteral(".cache/a/cache"), QByteArray("a"));
    const QString second = home.writeFile(QStringLiteral(".cache/b/cache"), QByteArray("b"));
    EXPECT_EQ(files.trashItem(first).resultingPath, home.trashFilesFolder() + QStringLiteral("/cache"));
    EXPECT_EQ(files.trashItem(second).resultingPath, home.trashFilesFolder() + QStringLiteral("/cache.2"));

    // Two long names alike in their first 245 bytes: the second keeps 243 and gets ".2".
    const QString longName = QString(250, QLatin1Char('n'));
    const FileOperationResult longOne = files.trashItem(home.writeFile(QStringLiteral(".cache/a/") + longName, 1));
    const FileOperationResult longTwo = files.trashItem(home.writeFile(QStringLiteral(".cache/b/") + longName, 1));
    EXPECT_EQ(longOne.resultingPath, home.trashFilesFolder() + QLatin1Char('/') + QString(245, QLatin1Char('n')));
    EXPECT_EQ(longTwo.resultingPath,
              home.trashFilesFolder() + QLatin1Char('/') + QString(243, QLatin1Char('n')) + QStringLiteral(".2"));

    constexpr int perThread = 30;
    std::vector<QString> paths;
    for (int i = 0; i < 2 * perThread; ++i)
        paths.push_back(home.writeFile(QStringLiteral(".cache/many/%1/same").arg(i), QByteArray::number(i)));
    std::vector<FileOperationResult> results(paths.size());
    const auto work = [&](int start) {
        for (int i = start; i < start + perThread; ++i)
            results[i] = files.trashItem(paths[i]);
    };
    std::thread one(work, 0);
    std::thread two(work, perThread);
    one.join();
    two.join();
    QSet<QString> places;
    for (std::size_t i = 0; i < results.size(); ++i) {
        ASSERT_TRUE(results[i].succeeded) << results[i].errorDescription.toStdString();
        places.insert(*results[i].resultingPath);
        EXPECT_EQ(readRaw(NativePath::encode(*results[i].resultingPath)), QByteArray::number(int(i)));
    }
    EXPECT_EQ(places.size(), 2 * perThread);
    EXPECT_EQ(entries(home.trashInfoFolder()).size(), 4 + 2 * perThread);
}

TEST(FreedesktopTrash, BrokenTrashFoldersFailTheItemClearlyAndLeaveNothingBehind)
{
    TestHome home;
    const FileManager files;
    ASSERT_TRUE(files.trashItem(home.writeFile(QStringLiteral(".cache/first"), 1)).succeeded);
    const QString trash = home.path(QStringLiteral(".local/share/Trash"));

    // The open folders are kept between items, but a plain file put in place of info/ is seen.
    ASSERT_TRUE(QDir(home.trashInfoFolder()).removeRecursively());
    home.writeFile(QStringLiteral(".local/share/Trash/info"), QByteArray("not a folder"));
    const QString item = home.writeFile(QStringLiteral(".cache/second"), QByteArray("kept"));
    FileOperationResult result = files.trashItem(item);
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.errorDescription, QStringLiteral("Could not move \u201c%1\u201d to the Trash: the Trash folder "
                                                      "%2/info cannot be used (it is not a folder).")
                                           .arg(item, trash));
    EXPECT_EQ(readRaw(NativePath::encode(item)), "kept");
    EXPECT_EQ(entries(home.trashFilesFolder()), QStringList{QStringLiteral("first")});
    EXPECT_EQ(readRaw(NativePath::encode(home.trashInfoFolder())), "not a folder");

    // files/ as a link to a folder elsewhere: nothing may land there.
    ASSERT_TRUE(QFile::remove(home.trashInfoFolder()));
    ASSERT_TRUE(QDir(home.trashFilesFolder()).removeRecursively());
    const QString elsewhere = home.makeDirectory(QStringLiteral("elsewhere"));
    home.makeSymbolicLink(QStringLiteral(".local/share/Trash/files"), elsewhere);
    result = files.trashItem(item);
    EXPECT_EQ(result.errorDescription, QStringLiteral("Could not move \u201c%1\u201d to the Trash: the Trash folder "
                                                      "%2/files cannot be used (it is a symbolic link).")
                                           .arg(item, trash));
    EXPECT_EQ(readRaw(NativePath::encode(item)), "kept");
    EXPECT_TRUE(entries(elsewhere).isEmpty());
    EXPECT_TRUE(entries(home.trashInfoFolder()).isEmpty());
}

TEST(FreedesktopTrash, FailedWriteOrMoveLeavesTheItemAndNoRecordAndTheNextItemGoesOn)
{
    TestHome home;
    const auto calls = std::make_shared<FailingCalls>();
    const FileManager files(calls);
    const QString item = home.writeFile(QStringLiteral(".cache/item"), QByteArray("kept"));

    calls->writeError = ENOSPC;
    FileOperationResult result = files.trashItem(item);
    EXPECT_EQ(result.errorDescription, QStringLiteral("Could not move \u201c%1\u201d to the Trash: writing "
                                                      "%2/item.trashinfo failed (No space left on device).")
                                           .arg(item, home.trashInfoFolder()));
    calls->writeError = 0;
    calls->renameError = EXDEV;
    result = files.trashItem(item);
    EXPECT_EQ(result.errorDescription, QStringLiteral("Could not move \u201c%1\u201d to the Trash: moving it into "
                                                      "%2 failed (Invalid cross-device link).")
                                           .arg(item, home.trashFilesFolder()));
    EXPECT_EQ(readRaw(NativePath::encode(item)), "kept");
    EXPECT_TRUE(entries(home.trashInfoFolder()).isEmpty());
    EXPECT_TRUE(entries(home.trashFilesFolder()).isEmpty());

    // An anchored item whose name another file took meanwhile is not touched.
    calls->renameError = 0;
    AnchorOutcome anchored = files.anchor(item);
    ASSERT_TRUE(anchored.item);
    ASSERT_TRUE(QFile::rename(item, item + QStringLiteral(".old"))); // still there, so its inode is not reused
    home.writeFile(QStringLiteral(".cache/item"), QByteArray("newcomer"));
    result = files.trashItem(*anchored.item);
    EXPECT_EQ(result.errorDescription,
              QStringLiteral("Could not move \u201c%1\u201d to the Trash: it changed after it was checked (another "
                             "item has taken its name).")
                  .arg(item));
    EXPECT_EQ(readRaw(NativePath::encode(item)), "newcomer");
    // Nor is an item reached through a linked folder.
    const QString linked = home.makeSymbolicLink(QStringLiteral(".cache/linked"), home.path(QStringLiteral(".cache")));
    result = files.trashItem(linked + QStringLiteral("/item"));
    EXPECT_EQ(result.errorDescription,
              QStringLiteral("Could not move \u201c%1/item\u201d to the Trash: it cannot be "
                             "reached (a folder on its path is a symbolic link or not a folder).")
                  .arg(linked));

    result = files.trashItem(item);
    EXPECT_TRUE(result.succeeded) << result.errorDescription.toStdString();
    EXPECT_EQ(entries(home.trashInfoFolder()), QStringList{QStringLiteral("item.trashinfo")});
}

TEST(FreedesktopTrash, FullHomeFileSystemFailsTheItemAtOnceAndLeavesNoEmptyRecord)
{
    TestHome home;
    const TmpfsMount disk(home.path(), "size=1m,nr_inodes=64");
    if (!disk.isMounted())
        GTEST_SKIP() << disk.error().toStdString();
    const FileManager files;
    ASSERT_TRUE(files.trashItem(home.writeFile(QStringLiteral("first"), 1)).succeeded);
    const QString item = home.writeFile(QStringLiteral("item"), QByteArray(10000, 'i'));

    // No room for a byte: the record is created but cannot be written.
    const QByteArray filler = NativePath::encode(home.path(QStringLiteral("filler")));
    const int fd = ::open(filler.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const QByteArray block(4096, 'f');
    while (::write(fd, block.constData(), block.size()) > 0) {
    }
    ::close(fd);
    FileOperationResult result = files.trashItem(item);
    EXPECT_FALSE(result.succeeded);
    EXPECT_TRUE(result.errorDescription.endsWith(QStringLiteral("item.trashinfo failed (No space left on device).")))
        << result.errorDescription.toStdString();
    EXPECT_EQ(readRaw(NativePath::encode(item)), QByteArray(10000, 'i'));
    EXPECT_EQ(entries(home.trashInfoFolder()), QStringList{QStringLiteral("first.trashinfo")});

    // No inode left either: the record cannot even be created.
    for (int i = 0;; ++i) {
        const int empty =
            ::open(NativePath::encode(home.path(QString::number(i))).constData(), O_CREAT | O_CLOEXEC, 0600);
        if (empty < 0)
            break;
        ::close(empty);
    }
    result = files.trashItem(item);
    EXPECT_TRUE(result.errorDescription.endsWith(QStringLiteral("item.trashinfo failed (No space left on device).")))
        << result.errorDescription.toStdString();
    EXPECT_EQ(readRaw(NativePath::encode(item)), QByteArray(10000, 'i'));
    EXPECT_EQ(entries(home.trashInfoFolder()), QStringList{QStringLiteral("first.trashinfo")});
}

TEST(FreedesktopTrash, ItemsOnAnotherMountGoToTheTrashAtItsTopWithRelativePaths)
{
    TestHome home;
    const QString top = home.makeDirectory(QStringLiteral("volume"));
    const TmpfsMount disk(top, "size=4m");
    if (!disk.isMounted())
        GTEST_SKIP() << disk.error().toStdString();
    const FileManager files;
    const QByteArray uid = QByteArray::number(::getuid());
    const QByteArray item = NativePath::encode(home.writeFile(QStringLiteral("volume/sub/item"), QByteArray("far")));

    // No shared .Trash: the user's own .Trash-$uid, made private.
    FileOperationResult result = files.trashItem(NativePath::decode(item));
    ASSERT_TRUE(result.succeeded) << result.errorDescription.toStdString();
    const QByteArray own = NativePath::encode(top) + "/.Trash-" + uid;
    EXPECT_EQ(NativePath::encode(*result.resultingPath), own + "/files/item");
    EXPECT_EQ(pathLineOf(readRaw(own + "/info/item.trashinfo")), "sub/item");
    EXPECT_EQ(QFileInfo(NativePath::decode(own)).permissions(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                                    QFile::ReadUser | QFile::WriteUser |
                                                                    QFile::ExeUser);
    EXPECT_FALSE(exists(NativePath::encode(home.trashFilesFolder())));

    // A sticky .Trash an administrator made takes the user's items in a folder of their own.
    const QByteArray shared = NativePath::encode(top) + "/.Trash";
    ASSERT_EQ(::mkdir(shared.constData(), 01777), 0);
    ASSERT_EQ(::chmod(shared.constData(), 01777), 0);
    writeRaw(item + "2", "shared");
    result = files.trashItem(NativePath::decode(item + "2"));
    ASSERT_TRUE(result.succeeded) << result.errorDescription.toStdString();
    EXPECT_EQ(NativePath::encode(*result.resultingPath), shared + '/' + uid + "/files/item2");
    EXPECT_EQ(pathLineOf(readRaw(shared + '/' + uid + "/info/item2.trashinfo")), "sub/item2");

    if (trashCliMissing())
        GTEST_SKIP() << "trash-restore (Debian's trash-cli) is not installed";
    restoreWithTrashCli(item + "2");
    restoreWithTrashCli(item);
    EXPECT_EQ(readRaw(item), "far");
    EXPECT_EQ(readRaw(item + "2"), "shared");
}
