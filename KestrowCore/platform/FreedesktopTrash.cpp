#include "platform/FreedesktopTrash.h"

#include "platform/NativePath.h"
#include "platform/TopDirectory.h"
#include "platform/TrashInfo.h"
#include "platform/TrashLocation.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrow {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
constexpr char recordSuffix[] = ".trashinfo";
// The longest NAME whose NAME.trashinfo still fits in a file name.
constexpr qsizetype longestName = 255 - (sizeof recordSuffix - 1);
// Names tried for one item: the item's own, then NAME.2 up to NAME.100, then random ones.
constexpr int numberedNames = 100;
constexpr int namesTried = 200;

// The name the item gets in the Trash at the given try, short enough for its record's name.
// Long names lose their end, cut between characters where the name is UTF-8.
QByteArray candidateName(const QByteArray& name, int attempt)
{
    QByteArray suffix;
    if (attempt > numberedNames)
        suffix = '.' + QByteArray::number(QRandomGenerator::global()->generate(), 16);
    else if (attempt > 1)
        suffix = '.' + QByteArray::number(attempt);
    const qsizetype room = longestName - suffix.size();
    if (name.size() <= room)
        return name + suffix;
    qsizetype cut = room;
    while (cut > 0 && (static_cast<unsigned char>(name.at(cut)) & 0xC0) == 0x80)
        --cut;
    return name.left(cut > 0 ? cut : room) + suffix;
}

QString text(const QByteArray& path)
{
    return NativePath::decode(path);
}

} // namespace

FreedesktopTrash::FreedesktopTrash(std::shared_ptr<const SystemCalls> systemCalls)
    : m_calls(std::move(systemCalls))
{
}

FileOperationResult FreedesktopTrash::trash(const AnchoredItem& item) const
{
    TrashError error{TrashError::Case::noHome, item.path, {}, {}};
    if (item.status.isMountRoot) {
        error.kind = TrashError::Case::mountPoint;
        return {false, std::nullopt, error.description()};
    }
    const QByteArray trashPath = TrashLocation::homeTrashPath();
    if (trashPath.isEmpty())
        return {false, std::nullopt, error.description()};

    // The home's file system is told by the open home Trash, or else by the folders on its way.
    std::shared_ptr<const Folders> home = cachedHomeTrash(trashPath);
    const std::optional<FileStatus> homeStatus = home ? home->filesStatus : homeFileSystem(trashPath);
    if (!homeStatus || TopDirectory::onSameMount(item.status, *homeStatus)) {
        if (!home)
            home = openHomeTrash(trashPath, error);
        return home ? file(item, *home) : FileOperationResult{false, std::nullopt, error.description()};
    }

    const std::shared_ptr<const Folders> top = topTrash(item, error);
    return top ? file(item, *top) : FileOperationResult{false, std::nullopt, error.description()};
}

std::shared_ptr<const FreedesktopTrash::Folders> FreedesktopTrash::cachedHomeTrash(const QByteArray& trashPath) const
{
    const std::lock_guard lock(m_mutex);
    if (m_home && !(m_home->path == trashPath && stillInPlace(*m_home)))
        m_home.reset();
    return m_home;
}

std::shared_ptr<const FreedesktopTrash::Folders> FreedesktopTrash::openHomeTrash(const QByteArray& trashPath,
                                                                                 TrashError& error) const
{
    const std::lock_guard lock(m_mutex);
    m_home.reset();
    const QByteArray dataHome = trashPath.left(trashPath.lastIndexOf('/'));
    int errorCode = 0;
    const UniqueFd data = openDataHome(dataHome.isEmpty() ? QByteArray("/") : dataHome, errorCode);
    if (!data.isOpen()) {
        error = {TrashError::Case::unusableFolder, error.item, text(trashPath), TrashError::systemText(errorCode)};
        return nullptr;
    }
    OpenedFolder folder = openFolder(data.get(), "Trash", true);
    if (!folder.problem.isEmpty()) {
        error = {TrashError::Case::unusableFolder, error.item, text(trashPath), folder.problem};
        return nullptr;
    }
    m_home = completed(std::move(folder), trashPath, {}, error);
    return m_home;
}

std::shared_ptr<const FreedesktopTrash::Folders> FreedesktopTrash::topTrash(const AnchoredItem& item,
                                                                            TrashError& error) const
{
    const QByteArray itemPath = NativePath::encode(item.path);
    const qsizetype slash = itemPath.lastIndexOf('/');
    const QByteArray parentPath = slash > 0 ? itemPath.left(slash) : QByteArray("/");
    int errorCode = 0;
    const std::optional<TopDirectory> top = TopDirectory::of(*m_calls, item.parent.get(), parentPath, errorCode);
    if (!top) {
        error = {TrashError::Case::unusableFolder, error.item, text(parentPath), TrashError::systemText(errorCode)};
        return nullptr;
    }
    const QByteArray base = top->path == "/" ? QByteArray() : top->path;
    const QByteArray uid = QByteArray::number(::getuid());

    // A shared .Trash counts only as an administrator sets it up: a real folder, sticky, so
    // that no user can take another's folder in it.
    const OpenedFolder shared = openFolder(top->folder.get(), ".Trash", false);
    if (shared.problem.isEmpty() && (shared.status.mode & S_ISVTX)) {
        OpenedFolder mine = openFolder(shared.fd.get(), uid, true);
        if (mine.problem.isEmpty() && mine.status.ownerId == ::getuid()) {
            TrashError sharedError = error;
            if (auto trash = completed(std::move(mine), base + "/.Trash/" + uid, top->path, sharedError))
                return trash;
        }
    }

    const QByteArray ownPath = base + "/.Trash-" + uid;
    OpenedFolder own = openFolder(top->folder.get(), ".Trash-" + uid, true);
    if (own.problem.isEmpty() && own.status.ownerId != ::getuid())
        own.problem = QStringLiteral("it belongs to another user");
    if (!own.problem.isEmpty()) {
        error = {TrashError::Case::unusableFolder, error.item, text(ownPath), own.problem};
        return nullptr;
    }
    return completed(std::move(own), ownPath, top->path, error);
}

std::shared_ptr<const FreedesktopTrash::Folders> FreedesktopTrash::completed(OpenedFolder folder,
                                                                             const QByteArray& path,
                                                                             const QByteArray& topPath,
                                                                             TrashError& error) const
{
    OpenedFolder files = openFolder(folder.fd.get(), "files", true);
    OpenedFolder info = files.problem.isEmpty() ? openFolder(folder.fd.get(), "info", true) : OpenedFolder{};
    const QString& problem = files.problem.isEmpty() ? info.problem : files.problem;
    if (!problem.isEmpty()) {
        error = {TrashError::Case::unusableFolder, error.item,
                 text(path + (files.problem.isEmpty() ? "/info" : "/files")), problem};
        return nullptr;
    }
    return std::make_shared<const Folders>(Folders{path, topPath, std::move(folder.fd), std::move(files.fd),
                                                   std::move(info.fd), folder.status, files.status, info.status});
}

bool FreedesktopTrash::stillInPlace(const Folders& trash) const
{
    const auto same = [&](int at, const char* name, const FileStatus& was) {
        FileStatus now;
        return m_calls->statAt(at, name, AT_SYMLINK_NOFOLLOW, now) == 0 && now.isDirectory() && now.isSameObject(was);
    };
    return same(AT_FDCWD, trash.path.constData(), trash.folderStatus) &&
           same(trash.folder.get(), "files", trash.filesStatus) && same(trash.folder.get(), "info", trash.infoStatus);
}

FreedesktopTrash::OpenedFolder FreedesktopTrash::openFolder(int at, const QByteArray& name, bool create) const
{
    OpenedFolder opened{UniqueFd(m_calls->openAt(at, name.constData(), folderFlags)), {}, {}};
    if (!opened.fd.isOpen() && errno == ENOENT && create) {
        if (m_calls->makeDirectoryAt(at, name.constData(), 0700) != 0 && errno != EEXIST) {
            opened.problem = TrashError::systemText(errno);
            return opened;
        }
        opened.fd = UniqueFd(m_calls->openAt(at, name.constData(), folderFlags));
    }
    if (!opened.fd.isOpen()) {
        const int errorCode = errno;
        FileStatus found;
        if (m_calls->statAt(at, name.constData(), AT_SYMLINK_NOFOLLOW, found) == 0 && found.isSymbolicLink())
            opened.problem = QStringLiteral("it is a symbolic link");
        else if (errorCode == ENOTDIR)
            opened.problem = QStringLiteral("it is not a folder");
        else
            opened.problem = TrashError::systemText(errorCode);
    } else if (m_calls->statAt(opened.fd.get(), ".", AT_SYMLINK_NOFOLLOW, opened.status) != 0) {
        opened.problem = TrashError::systemText(errno);
    }
    return opened;
}

UniqueFd FreedesktopTrash::openDataHome(const QByteArray& path, int& errorCode) const
{
    // The data folder may be reached through links (a user's choice); a fresh account may not
    // have it yet, so missing folders on the way are made, private.
    UniqueFd folder(m_calls->openAt(AT_FDCWD, path.constData(), O_RDONLY | O_DIRECTORY));
    if (folder.isOpen() || errno != ENOENT) {
        errorCode = errno;
        return folder;
    }
    folder = UniqueFd(m_calls->openAt(AT_FDCWD, "/", O_RDONLY | O_DIRECTORY));
    for (const QByteArray& component : path.split('/')) {
        if (!folder.isOpen())
            break;
        if (component.isEmpty() || component == ".")
            continue;
        UniqueFd next(m_calls->openAt(folder.get(), component.constData(), O_RDONLY | O_DIRECTORY));
        if (!next.isOpen() && errno == ENOENT &&
            (m_calls->makeDirectoryAt(folder.get(), component.constData(), 0700) == 0 || errno == EEXIST))
            next = UniqueFd(m_calls->openAt(folder.get(), component.constData(), O_RDONLY | O_DIRECTORY));
        folder = std::move(next);
    }
    errorCode = errno;
    return folder;
}

std::optional<FileStatus> FreedesktopTrash::homeFileSystem(QByteArray path) const
{
    // The home Trash could not be set up; the nearest folder on its way that exists still
    // tells which items would have gone there.
    FileStatus status;
    while (m_calls->statAt(AT_FDCWD, path.constData(), 0, status) != 0) {
        if (path == "/")
            return std::nullopt;
        path.truncate(std::max<qsizetype>(1, path.lastIndexOf('/')));
    }
    return status;
}

FileOperationResult FreedesktopTrash::file(const AnchoredItem& item, const Folders& trash) const
{
    const QByteArray itemPath = NativePath::encode(item.path);
    const QByteArray original =
        trash.topPath.isEmpty() ? itemPath : itemPath.mid(trash.topPath == "/" ? 1 : trash.topPath.size() + 1);
    const QByteArray content = TrashInfo::content(original, std::time(nullptr));
    const QByteArray filesPath = trash.path + "/files";
    const QByteArray infoPath = trash.path + "/info";
    const auto failed = [&](TrashError::Case kind, const QByteArray& place, const QString& reason) {
        return FileOperationResult{false, std::nullopt, TrashError{kind, item.path, text(place), reason}.description()};
    };

    for (int attempt = 1; attempt <= namesTried; ++attempt) {
        const QByteArray name = candidateName(item.name, attempt);
        const QByteArray recordName = name + recordSuffix;
        UniqueFd record(
            m_calls->openAt(trash.info.get(), recordName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
        if (!record.isOpen()) {
            if (errno == EEXIST)
                continue;
            return failed(TrashError::Case::recordNotWritten, infoPath + '/' + recordName,
                          TrashError::systemText(errno));
        }
        int errorCode = writeRecord(record.get(), content);
        record.reset();
        TrashError::Case kind = TrashError::Case::recordNotWritten;
        QByteArray place = infoPath + '/' + recordName;
        if (errorCode == 0) {
            kind = TrashError::Case::notMoved;
            place = filesPath;
            errorCode = moveInto(item, trash.files.get(), name);
            if (errorCode == 0)
                return {true, text(filesPath + '/' + name), {}};
        }
        QString reason = TrashError::systemText(errorCode);
        if (m_calls->unlinkAt(trash.info.get(), recordName.constData(), 0) != 0)
            reason += QStringLiteral("; the record %1 could not be removed: %2")
                          .arg(text(infoPath + '/' + recordName), TrashError::systemText(errno));
        else if (errorCode == EEXIST)
            continue; // files/NAME is taken by something without a record
        return failed(kind, place, reason);
    }
    return failed(TrashError::Case::noFreeName, filesPath, {});
}

int FreedesktopTrash::moveInto(const AnchoredItem& item, int files, const QByteArray& name) const
{
    const char* from = item.name.constData();
    if (m_calls->renameAt(item.parent.get(), from, files, name.constData(), true) == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // A file system without an exclusive rename (NFS). The record already made NAME ours
    // against every writer that keeps records; only an entry without one can be in the way.
    FileStatus existing;
    if (m_calls->statAt(files, name.constData(), AT_SYMLINK_NOFOLLOW, existing) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return m_calls->renameAt(item.parent.get(), from, files, name.constData()) == 0 ? 0 : errno;
}

int FreedesktopTrash::writeRecord(int fd, const QByteArray& content) const
{
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t count = m_calls->write(fd, content.constData() + written, content.size() - written);
        if (count < 0)
            return errno;
        if (count == 0)
            return ENOSPC; // a regular file takes no bytes only when there is no room
        written += count;
    }
    return m_calls->sync(fd) == 0 ? 0 : errno;
}

} // namespace kestrow
