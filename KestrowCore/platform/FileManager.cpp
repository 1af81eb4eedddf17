#include "platform/FileManager.h"

#include "platform/SystemMessage.h"

#include "platform/BundleFolders.h"
#include "platform/DirectoryStream.h"
#include "platform/FreedesktopTrash.h"
#include "platform/NativePath.h"
#include "platform/TrashError.h"
#include "platform/TreeRemover.h"
#include "platform/TreeWalker.h"
#include "platform/WalkCrew.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <thread>

namespace kestrow {

namespace {

std::int64_t nanoseconds(const struct timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * 1000000000LL + time.tv_nsec;
}

FileStatus toStatus(const struct stat& info)
{
    FileStatus status;
    if (S_ISREG(info.st_mode))
        status.type = FileStatus::Type::regular;
    else if (S_ISDIR(info.st_mode))
        status.type = FileStatus::Type::directory;
    else if (S_ISLNK(info.st_mode))
        status.type = FileStatus::Type::symbolicLink;
    status.size = info.st_size;
    status.allocatedSize = static_cast<std::int64_t>(info.st_blocks) * 512;
    status.device = static_cast<std::uint64_t>(info.st_dev);
    status.inode = static_cast<std::uint64_t>(info.st_ino);
    status.linkCount = static_cast<std::uint64_t>(info.st_nlink);
#if defined(__APPLE__)
    status.accessedNanoseconds = nanoseconds(info.st_atimespec);
    status.modifiedNanoseconds = nanoseconds(info.st_mtimespec);
    status.fileFlags = static_cast<std::uint32_t>(info.st_flags);
#else
    status.accessedNanoseconds = nanoseconds(info.st_atim);
    status.modifiedNanoseconds = nanoseconds(info.st_mtim);
#endif
    status.mode = static_cast<std::uint32_t>(info.st_mode & 07777);
    return status;
}

// Hands what the walker meets to a WalkSink: regular files with their status (one statAt
// each; a link, a socket or a device needs none), folders that could not be read, mount points.
class SinkVisitor final : public TreeWalker::Visitor {
public:
    SinkVisitor(const SystemCalls& calls, WalkSink& sink, const WalkOptions& options)
        : m_calls(calls)
        , m_sink(sink)
        , m_pace(options.pace)
        , m_entersBundles(options.entersBundles)
    {
    }

    bool entry(int folder, std::string_view, const char* name, unsigned char type, const FileStatus* status) override
    {
        FileStatus taken;
        if (!status) {
            if (type != DT_REG && type != DT_UNKNOWN)
                return true;
            // A file that vanished between listing and stat is skipped.
            if (m_calls.statAt(folder, name, AT_SYMLINK_NOFOLLOW, taken) != 0)
                return true;
            status = &taken;
        }
        if (status->isRegularFile())
            m_sink.regularFile(*status);
        return true;
    }

    bool leftFolder(int, const char*, std::string_view) override { return true; }

    bool unreadableFolder(std::string_view path, int errorCode) override
    {
        m_sink.unreadableDirectory(NativePath::decode(path.data(), static_cast<qsizetype>(path.size())), errorCode);
        return true;
    }

    bool mountPoint(std::string_view path) override
    {
        m_sink.mountPoint(NativePath::decode(path.data(), static_cast<qsizetype>(path.size())));
        return true;
    }

    bool listingFolder() override { return !m_pace || m_pace(); }

    bool entersFolder(std::string_view path) override { return m_entersBundles || !BundleFolders::isBundle(path); }

private:
    const SystemCalls& m_calls;
    WalkSink& m_sink;
    const std::function<bool()>& m_pace;
    bool m_entersBundles;
};

// One thread of a walk on several: its part of the sink and its own walker.
struct CrewMember {
    CrewMember(const SystemCalls& calls, WalkSink& part, const WalkOptions& options, WalkCrew& crew, WalkCrew::Job& job)
        : visitor(calls, part, options)
        , walker(calls, visitor, crew, job)
    {
    }
    SinkVisitor visitor;
    TreeWalker walker;
};

// A walk into one sink that the threads of a crew share: the thread that begins it walks into
// the sink itself, every other thread into a part of its own, joined in when all is walked.
class SinkWalk final : public WalkCrew::Job {
public:
    SinkWalk(const SystemCalls& calls, WalkSink& sink, std::vector<std::unique_ptr<WalkSink>> parts,
             const WalkOptions& options, const FileStatus* mount, WalkCrew& crew, std::size_t owner)
        : m_calls(calls)
        , m_sink(sink)
        , m_parts(std::move(parts))
        , m_options(options)
        , m_mount(mount)
        , m_crew(crew)
        , m_owner(owner)
        , m_members(crew.workers())
    {
    }

    bool walk(std::size_t worker, UniqueFd folder, std::string path) override
    {
        std::unique_ptr<CrewMember>& member = m_members[worker];
        if (!member)
            member = std::make_unique<CrewMember>(m_calls, worker == m_owner ? m_sink : *m_parts[worker], m_options,
                                                  m_crew, *this);
        return member->walker.walk(std::move(folder), std::move(path), m_mount);
    }

    void joinParts()
    {
        for (const std::unique_ptr<WalkSink>& part : m_parts)
            if (part)
                m_sink.join(*part);
    }

private:
    const SystemCalls& m_calls;
    WalkSink& m_sink;
    std::vector<std::unique_ptr<WalkSink>> m_parts; // by worker; none for the owner
    const WalkOptions& m_options;
    const FileStatus* m_mount;
    WalkCrew& m_crew;
    std::size_t m_owner;
    std::vector<std::unique_ptr<CrewMember>> m_members; // by worker, each made on its own thread
};

// Walks the open `root`, on one thread or, with a sink that splits, on as many as `options`
// allows (or on the crew it names), each into a part of the sink of its own; the parts are
// joined in when all is walked.
void walkTree(const SystemCalls& calls, UniqueFd root, std::string path, const FileStatus* mount, WalkSink& sink,
              std::stop_token stop, const WalkOptions& options)
{
    std::optional<WalkCrew> ownCrew;
    WalkCrew* crew = options.crew;
    const std::size_t owner = crew ? options.worker : 0;
    if (crew)
        stop = crew->stopToken();
    const std::size_t workers = crew ? crew->workers() : options.threads;
    std::vector<std::unique_ptr<WalkSink>> parts(std::max<std::size_t>(workers, 1));
    for (std::size_t worker = 0; worker < parts.size(); ++worker) {
        if (worker != owner && !(parts[worker] = sink.split())) {
            parts.clear();
            break;
        }
    }
    if (parts.size() < 2) {
        SinkVisitor visitor(calls, sink, options);
        TreeWalker(calls, visitor, std::move(stop)).walk(std::move(root), std::move(path), mount);
        return;
    }
    if (!crew)
        crew = &ownCrew.emplace(workers - 1, std::move(stop));
    SinkWalk walk(calls, sink, std::move(parts), options, mount, *crew, owner);
    if (!walk.walk(owner, std::move(root), std::move(path)))
        crew->end(walk);
    crew->wait(walk, owner);
    walk.joinParts();
}

} // namespace

WalkOptions WalkOptions::allProcessors()
{
    return {.threads = std::max(1u, std::thread::hardware_concurrency()), .pace = {}};
}

FileManager::FileManager(std::shared_ptr<const SystemCalls> systemCalls)
    : m_systemCalls(systemCalls ? std::move(systemCalls) : SystemCalls::real())
#if !defined(__APPLE__)
    , m_trash(std::make_shared<const FreedesktopTrash>(m_systemCalls))
#endif
{
}

AnchorOutcome FileManager::anchor(const QString& path) const
{
    const QByteArray native = NativePath::encode(path);
    if (!native.startsWith('/'))
        return {std::nullopt, EINVAL};
    qsizetype end = native.size();
    while (end > 1 && native.at(end - 1) == '/')
        --end; // "dir/" names the entry "dir", a link as much as a folder
    const qsizetype slash = native.lastIndexOf('/', end - 1);
    const QByteArray name = native.mid(slash + 1, end - slash - 1);
    if (name.isEmpty() || name == "." || name == "..")
        return {std::nullopt, EINVAL};
    const QByteArray folderPath = slash == 0 ? QByteArray("/") : native.left(slash);

    int errorCode = 0;
    UniqueFd folder = openFolderWithoutLinks(folderPath, false, errorCode);
    if (!folder.isOpen())
        return {std::nullopt, errorCode};

    FileStatus status;
    if (m_systemCalls->statAt(folder.get(), name.constData(), AT_SYMLINK_NOFOLLOW, status) != 0)
        return {std::nullopt, errno};
    return {AnchoredItem{std::move(folder), name,
                         NativePath::decode(folderPath.endsWith('/') ? QByteArray(folderPath + name)
                                                                     : QByteArray(folderPath + '/' + name)),
                         status},
            0};
}

UniqueFd FileManager::openFolderWithoutLinks(const QByteArray& folderPath, bool createMissing, int& errorCode) const
{
    const SystemCalls& calls = *m_systemCalls;
    const int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    UniqueFd folder(calls.openConstrained(AT_FDCWD, folderPath.constData(), folderFlags, SystemCalls::noSymbolicLinks));
    if (!folder.isOpen() && (errno == ENOSYS || (errno == ENOENT && createMissing))) {
        // No openat2, or folders to make: the same walk done by hand, one component at a time.
        folder = UniqueFd(calls.openAt(AT_FDCWD, "/", folderFlags));
        for (const QByteArray& component : folderPath.split('/')) {
            if (!folder.isOpen())
                break;
            if (component.isEmpty() || component == ".")
                continue;
            if (component == "..") {
                errno = ELOOP;
                folder.reset();
                break;
            }
            UniqueFd next(calls.openAt(folder.get(), component.constData(), folderFlags));
            // Made with the usual mode, as a new folder of the user's is; the umask applies.
            if (!next.isOpen() && errno == ENOENT && createMissing &&
                (calls.makeDirectoryAt(folder.get(), component.constData(), 0777) == 0 || errno == EEXIST))
                next = UniqueFd(calls.openAt(folder.get(), component.constData(), folderFlags));
            folder = std::move(next);
        }
    }
    errorCode = folder.isOpen() ? 0 : errno;
    return folder;
}

int FileManager::verifyAnchored(const AnchoredItem& item) const
{
    FileStatus now;
    if (m_systemCalls->statAt(item.parent.get(), item.name.constData(), AT_SYMLINK_NOFOLLOW, now) != 0)
        return errno;
    return now.isSameObject(item.status) && now.type == item.status.type ? 0 : ESTALE;
}

std::optional<FileStatus> FileManager::status(const QString& path, bool followLinks) const
{
    struct stat info;
    const QByteArray native = NativePath::encode(path);
    if ((followLinks ? ::stat(native.constData(), &info) : ::lstat(native.constData(), &info)) != 0)
        return std::nullopt;
    return toStatus(info);
}

bool FileManager::fileExists(const QString& path, bool* isDirectory) const
{
    struct stat info;
    if (path.isEmpty() || ::stat(NativePath::encode(path).constData(), &info) != 0)
        return false;
    if (isDirectory)
        *isDirectory = S_ISDIR(info.st_mode);
    return true;
}

DirectoryListing FileManager::contentsOfDirectory(const QString& path, bool skipHidden) const
{
    DirectoryListing listing;
    DirectoryStream directory(
        UniqueFd(m_systemCalls->openAt(AT_FDCWD, NativePath::encode(path).constData(), O_RDONLY | O_DIRECTORY)));
    if (!directory.isOpen()) {
        listing.errorCode = errno;
        return listing;
    }
    int error = 0;
    while (const dirent* entry = directory.next(error)) {
        const char* name = entry->d_name;
        if (skipHidden && name[0] == '.')
            continue;
        DirectoryEntry item{NativePath::decode(name), entry->d_type == DT_DIR, entry->d_type == DT_LNK};
        FileStatus status;
        if (entry->d_type == DT_UNKNOWN &&
            m_systemCalls->statAt(directory.fd(), name, AT_SYMLINK_NOFOLLOW, status) == 0) {
            item.isDirectory = status.isDirectory();
            item.isSymbolicLink = status.isSymbolicLink();
        }
        listing.entries.push_back(std::move(item));
    }
    listing.errorCode = error;
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
    return listing;
}

void FileManager::walk(const QString& root, WalkSink& sink, std::stop_token stop, const WalkOptions& options) const
{
    QByteArray native = NativePath::encode(root);
    while (native.size() > 1 && native.endsWith('/'))
        native.chop(1); // "link/" would lead through the link
    // The root itself is never reached through a link: a link is measured as what it is.
    UniqueFd folder(m_systemCalls->openAt(AT_FDCWD, native.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
    if (!folder.isOpen()) {
        sink.unreadableDirectory(root, errno);
        return;
    }
    walkTree(*m_systemCalls, std::move(folder), native.toStdString(), nullptr, sink, std::move(stop), options);
}

FileOperationResult FileManager::trashItem(const QString& path) const
{
    AnchorOutcome anchored = anchor(path);
    if (anchored.item)
        return trashItem(*anchored.item);
    const int error = anchored.errorCode;
    const QString reason = error == ELOOP || error == ENOTDIR
                               ? QStringLiteral("a folder on its path is a symbolic link or not a folder")
                               : TrashError::systemText(error);
    return {false, std::nullopt, TrashError{TrashError::Case::unreachable, path, {}, reason}.description()};
}

FileOperationResult FileManager::removeItem(const QString& path) const
{
    const AnchorOutcome anchored = anchor(path);
    if (!anchored.item)
        return TreeRemover::failure(path, anchored.errorCode);
    return removeItem(*anchored.item);
}

void FileManager::walk(const AnchoredItem& item, WalkSink& sink, std::stop_token stop, const WalkOptions& options) const
{
    int error = verifyAnchored(item);
    UniqueFd folder;
    FileStatus status;
    if (error == 0) {
        // The item itself may be a mount point; the walk stays on whatever is mounted there.
        folder = UniqueFd(
            m_systemCalls->openAt(item.parent.get(), item.name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
        if (!folder.isOpen() || m_systemCalls->statAt(folder.get(), "", AT_EMPTY_PATH, status) != 0)
            error = errno;
        else if (!status.isSameObject(item.status))
            error = ESTALE;
    }
    if (error != 0) {
        sink.unreadableDirectory(item.path, error);
        return;
    }
    walkTree(*m_systemCalls, std::move(folder), NativePath::encode(item.path).toStdString(), &status, sink,
             std::move(stop), options);
}

FileOperationResult FileManager::trashItem(const AnchoredItem& item) const
{
    if (const int error = verifyAnchored(item)) {
        const QString reason =
            error == ESTALE ? QStringLiteral("another item has taken its name") : TrashError::systemText(error);
        return {false, std::nullopt, TrashError{TrashError::Case::changed, item.path, {}, reason}.description()};
    }
#if defined(__APPLE__)
    QFile file(item.path);
    if (!file.moveToTrash())
        return {false, std::nullopt, file.errorString()};
    return {true, file.fileName(), {}};
#else
    return m_trash->trash(item);
#endif
}

FileOperationResult FileManager::removeItem(const AnchoredItem& item) const
{
    return TreeRemover(*this).remove(item);
}

FileManager::RegularFileRead FileManager::readRegularFile(const QString& path, qsizetype maxBytes,
                                                          bool followLinks) const
{
    RegularFileRead result;
    const auto fail = [&result](int errorCode) {
        result.bytes.clear();
        result.errorCode = errorCode;
        result.errorDescription = SystemMessage::of(errorCode);
        return std::move(result);
    };
    const auto notRegular = [&result](const FileStatus& status) {
        result.errorCode = status.isDirectory() ? EISDIR : status.isSymbolicLink() ? ELOOP : EINVAL;
        result.errorDescription = status.isSymbolicLink() ? QStringLiteral("it is a symbolic link")
                                                          : QStringLiteral("it is not a regular file");
        return std::move(result);
    };
    const QByteArray native = NativePath::encode(path);
    const SystemCalls& calls = *m_systemCalls;
    const int linkFlag = followLinks ? 0 : AT_SYMLINK_NOFOLLOW;
    FileStatus status;
    // Looked at first, so that a FIFO or a device is not even opened; then checked again on
    // what was opened, in case the name changed hands in between.
    if (calls.statAt(AT_FDCWD, native.constData(), linkFlag, status) != 0)
        return fail(errno);
    if (!status.isRegularFile())
        return notRegular(status);
    const int openFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | (followLinks ? 0 : O_NOFOLLOW);
    const UniqueFd file(calls.openAt(AT_FDCWD, native.constData(), openFlags));
    if (!file.isOpen())
        return fail(errno);
    if (calls.statAt(file.get(), "", AT_EMPTY_PATH, status) != 0)
        return fail(errno);
    if (!status.isRegularFile())
        return notRegular(status);
    result.opened = true;
    result.bytes.resize(std::max<qsizetype>(maxBytes, 0));
    qsizetype filled = 0;
    while (filled < result.bytes.size()) {
        const ssize_t count =
            calls.read(file.get(), result.bytes.data() + filled, static_cast<size_t>(result.bytes.size() - filled));
        if (count < 0)
            return fail(errno);
        if (count == 0)
            break;
        filled += count;
    }
    result.bytes.truncate(filled);
    return result;
}

} // namespace kestrow
