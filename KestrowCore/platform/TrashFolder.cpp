#include "platform/TrashFolder.h"

#include "platform/DirectoryStream.h"
#include "platform/NativePath.h"
#include "platform/SystemMessage.h"
#include "platform/TrashEntryError.h"
#include "platform/TrashInfo.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kestrow {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
constexpr qsizetype largestRecord = 64 * 1024;
constexpr QByteArrayView recordSuffix = ".trashinfo";

// A folder of the user's own, not reached through a link; not open otherwise.
UniqueFd openOwnFolder(const SystemCalls& calls, int at, const char* name)
{
    UniqueFd folder(calls.openAt(at, name, folderFlags));
    FileStatus status;
    if (folder.isOpen() && (calls.statAt(folder.get(), "", AT_EMPTY_PATH, status) != 0 || status.ownerId != ::getuid()))
        folder.reset();
    return folder;
}

// The record's bytes, read only from a regular file of a sane size; empty otherwise.
QByteArray readRecord(const SystemCalls& calls, int info, const char* name)
{
    const UniqueFd file(calls.openAt(info, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    FileStatus status;
    if (!file.isOpen() || calls.statAt(file.get(), "", AT_EMPTY_PATH, status) != 0 || !status.isRegularFile() ||
        status.size > largestRecord)
        return {};
    QByteArray content(static_cast<qsizetype>(status.size), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < content.size()) {
        const ssize_t count =
            calls.read(file.get(), content.data() + filled, static_cast<size_t>(content.size() - filled));
        if (count <= 0)
            break;
        filled += count;
    }
    content.truncate(filled);
    return content;
}

// An absolute path of plain components: no empty, "." or ".." ones, and not the root.
bool isPlainAbsolute(const QByteArray& path)
{
    if (!path.startsWith('/') || path.size() < 2)
        return false;
    const QList<QByteArray> components = path.mid(1).split('/');
    return std::none_of(components.begin(), components.end(),
                        [](const QByteArray& c) { return c.isEmpty() || c == "." || c == ".."; });
}

} // namespace

TrashFolder::TrashFolder(const FileManager& fileManager, TrashLocation::Folder location, UniqueFd files, UniqueFd info)
    : m_fileManager(&fileManager)
    , m_location(std::move(location))
    , m_files(std::move(files))
    , m_info(std::move(info))
{
}

std::optional<TrashFolder> TrashFolder::open(const FileManager& fileManager, const TrashLocation::Folder& location)
{
    const SystemCalls& calls = fileManager.systemCalls();
    const qsizetype slash = location.path.lastIndexOf('/');
    if (slash < 0)
        return std::nullopt;
    // The folders above the home Trash may be reached through links (a user's choice of data
    // home); a shared $topdir/.Trash may not, nor the Trash and its two folders.
    const int aboveFlags = location.topPath.isEmpty() ? O_RDONLY | O_DIRECTORY : folderFlags;
    const UniqueFd above(calls.openAt(AT_FDCWD, slash == 0 ? "/" : location.path.left(slash).constData(), aboveFlags));
    if (!above.isOpen())
        return std::nullopt;
    const UniqueFd trash = openOwnFolder(calls, above.get(), location.path.mid(slash + 1).constData());
    if (!trash.isOpen())
        return std::nullopt;
    UniqueFd files = openOwnFolder(calls, trash.get(), "files");
    UniqueFd info = openOwnFolder(calls, trash.get(), "info");
    if (!files.isOpen() || !info.isOpen())
        return std::nullopt;
    return TrashFolder(fileManager, location, std::move(files), std::move(info));
}

std::vector<TrashEntry> TrashFolder::entries() const
{
    const SystemCalls& calls = m_fileManager->systemCalls();
    std::vector<TrashEntry> found;
    DirectoryStream records(UniqueFd(calls.openAt(m_info.get(), ".", O_RDONLY | O_DIRECTORY)));
    if (!records.isOpen())
        return found;
    int errorCode = 0;
    while (const dirent* record = records.next(errorCode)) {
        const QByteArray recordName(record->d_name);
        if (!recordName.endsWith(recordSuffix) || recordName.size() == recordSuffix.size())
            continue;
        const std::optional<TrashInfo::Fields> fields =
            TrashInfo::read(readRecord(calls, m_info.get(), recordName.constData()));
        if (!fields)
            continue;
        TrashEntry entry{m_location, recordName.chopped(recordSuffix.size()), {}, fields->deletedAt, {}};
        if (calls.statAt(m_files.get(), entry.name.constData(), AT_SYMLINK_NOFOLLOW, entry.status) != 0)
            continue;
        // Records of a top folder's Trash hold paths relative to the top, or absolute ones.
        const QByteArray& original = fields->originalPath;
        const QByteArray& top = m_location.topPath;
        QByteArray path = original;
        if (!top.isEmpty() && !original.startsWith('/'))
            path = top == "/" ? QByteArray('/' + original) : QByteArray(top + '/' + original);
        entry.originalPath = NativePath::decode(path);
        found.push_back(std::move(entry));
    }
    std::sort(found.begin(), found.end(), [](const TrashEntry& a, const TrashEntry& b) { return a.name < b.name; });
    return found;
}

AnchorOutcome TrashFolder::anchor(const TrashEntry& entry) const
{
    const SystemCalls& calls = m_fileManager->systemCalls();
    UniqueFd files(calls.openAt(m_files.get(), ".", O_RDONLY | O_DIRECTORY));
    if (!files.isOpen())
        return {std::nullopt, errno};
    FileStatus now;
    if (calls.statAt(files.get(), entry.name.constData(), AT_SYMLINK_NOFOLLOW, now) != 0)
        return {std::nullopt, errno};
    if (!now.isSameObject(entry.status) || now.type != entry.status.type)
        return {std::nullopt, ESTALE};
    return {AnchoredItem{std::move(files), entry.name, entry.filePath(), now}, 0};
}

FileOperationResult TrashFolder::putBack(const AnchoredItem& item, const TrashEntry& entry) const
{
    const auto failed = [&](TrashEntryError::Case kind, const QString& reason = {}) {
        return FileOperationResult{false, std::nullopt,
                                   TrashEntryError{kind, entry.originalPath, entry.filePath(), reason}.description()};
    };
    const QByteArray original = NativePath::encode(entry.originalPath);
    if (!isPlainAbsolute(original))
        return failed(TrashEntryError::Case::unusableRecord);
    const qsizetype slash = original.lastIndexOf('/');
    const QByteArray name = original.mid(slash + 1);
    int errorCode = 0;
    const UniqueFd parent =
        m_fileManager->openFolderWithoutLinks(slash == 0 ? QByteArray("/") : original.left(slash), true, errorCode);
    if (!parent.isOpen())
        return failed(TrashEntryError::Case::unreachable,
                      errorCode == ELOOP || errorCode == ENOTDIR
                          ? QStringLiteral("a folder on its path is a symbolic link or not a folder")
                          : SystemMessage::of(errorCode));
    if (const int changed = m_fileManager->verifyAnchored(item))
        return failed(TrashEntryError::Case::changed, changed == ESTALE
                                                          ? QStringLiteral("another item has taken its name")
                                                          : SystemMessage::of(changed));

    const SystemCalls& calls = m_fileManager->systemCalls();
    if (calls.renameAt(item.parent.get(), item.name.constData(), parent.get(), name.constData(), true) != 0) {
        // Without an exclusive move there is no way to be sure of never replacing anything.
        if (errno == EEXIST || errno == ENOTEMPTY)
            return failed(TrashEntryError::Case::occupied);
        if (errno == EINVAL || errno == ENOSYS)
            return failed(TrashEntryError::Case::noExclusiveMove);
        return failed(TrashEntryError::Case::notMoved, SystemMessage::of(errno));
    }
    if (const int recordError = removeRecord(entry))
        return {true, entry.originalPath,
                TrashEntryError{TrashEntryError::Case::recordNotRemoved, entry.originalPath, entry.infoPath(),
                                SystemMessage::of(recordError)}
                    .description()};
    return {true, entry.originalPath, {}};
}

FileOperationResult TrashFolder::erase(const AnchoredItem& item, const TrashEntry& entry) const
{
    FileOperationResult removed = m_fileManager->removeItem(item);
    if (!removed.succeeded)
        return removed;
    if (const int recordError = removeRecord(entry))
        return {true, std::nullopt,
                TrashEntryError{TrashEntryError::Case::recordLeftBehind, entry.filePath(), entry.infoPath(),
                                SystemMessage::of(recordError)}
                    .description()};
    return removed;
}

int TrashFolder::removeRecord(const TrashEntry& entry) const
{
    return m_fileManager->systemCalls().unlinkAt(m_info.get(), entry.recordName().constData(), 0) == 0 ? 0 : errno;
}

} // namespace kestrow
