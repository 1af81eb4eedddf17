#include "platform/TreeWalker.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>

namespace kestrow {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;

bool isOtherMount(const FileStatus& folder, const FileStatus& mount)
{
    if (folder.isMountRoot)
        return true;
    // Without mount ids only another device gives a mount away; a bind mount of the same file
    // system then goes unseen.
    if (folder.mountId != 0 && mount.mountId != 0)
        return folder.mountId != mount.mountId;
    return folder.device != mount.device;
}

} // namespace

TreeWalker::TreeWalker(const SystemCalls& calls, Visitor& visitor, std::stop_token stop)
    : m_calls(calls)
    , m_visitor(visitor)
    , m_stop(std::move(stop))
    , m_lister(calls)
{
}

TreeWalker::TreeWalker(const SystemCalls& calls, Visitor& visitor, WalkCrew& crew, WalkCrew::Job& job)
    : m_calls(calls)
    , m_visitor(visitor)
    , m_stop(crew.stopToken())
    , m_crew(&crew)
    , m_job(&job)
    , m_openLevels(std::max<std::size_t>(openLevels / crew.workers(), 8))
    , m_lister(calls)
{
}

int TreeWalker::openFolder(int folder, const char* name, const FileStatus* mount)
{
    if (!mount)
        return m_calls.openAt(folder, name, folderFlags);
    if (m_constrainedOpens) {
        const int fd = m_calls.openConstrained(folder, name, folderFlags,
                                               SystemCalls::noSymbolicLinks | SystemCalls::noMountCrossing);
        if (fd >= 0 || errno != ENOSYS)
            return fd;
        m_constrainedOpens = false;
    }
    UniqueFd fd(m_calls.openAt(folder, name, folderFlags));
    if (!fd.isOpen())
        return -1;
    FileStatus status;
    if (m_calls.statAt(fd.get(), "", AT_EMPTY_PATH, status) != 0)
        return -1;
    if (isOtherMount(status, *mount)) {
        errno = EXDEV;
        return -1;
    }
    return fd.release();
}

bool TreeWalker::walk(UniqueFd root, std::string path, const FileStatus* mount)
{
    m_mount = mount;
    m_path = std::move(path);
    m_depth = 0;
    if (!enter(std::move(root), m_path.size()))
        return false;
    while (m_depth > 0) {
        Frame& frame = m_frames[m_depth - 1];
        if (frame.next == frame.listing.entries.size()) {
            if (!climb())
                return false;
            continue;
        }
        if (m_stop.stop_requested())
            return false;
        const FolderListing::Entry entry = frame.listing.entries[frame.next++];
        const char* name = frame.listing.name(entry);
        unsigned char type = entry.type;
        FileStatus status;
        const FileStatus* known = nullptr;
        if (type == DT_UNKNOWN && m_calls.statAt(frame.folder.get(), name, AT_SYMLINK_NOFOLLOW, status) == 0) {
            if (status.isDirectory())
                type = DT_DIR;
            else
                known = &status;
        }
        if (!(type == DT_DIR ? descend(name) : m_visitor.entry(frame.folder.get(), m_path, name, type, known)))
            return false;
    }
    return true;
}

bool TreeWalker::enter(UniqueFd folder, std::size_t nameStart)
{
    if (m_frames.size() == m_depth)
        m_frames.emplace_back();
    Frame& frame = m_frames[m_depth];
    frame.folder = std::move(folder);
    frame.listing.entries.clear();
    frame.next = 0;
    frame.unsearched = 0;
    frame.nameStart = nameStart;
    frame.pathEnd = m_path.size();
    if (m_depth >= m_openLevels) {
        // This folder may be let go, so it has to be known again when it is reopened.
        FileStatus status;
        if (m_calls.statAt(frame.folder.get(), "", AT_EMPTY_PATH, status) != 0) {
            frame.folder.reset();
            return m_visitor.unreadableFolder(m_path, errno);
        }
        frame.device = status.device;
        frame.inode = status.inode;
    }
    if (!m_visitor.listingFolder()) {
        frame.folder.reset();
        return false;
    }
    const int error = m_lister.list(frame.folder.get(), frame.listing);
    ++m_depth;
    // What was listed before the failure is still walked.
    return error == 0 || m_visitor.unreadableFolder(m_path, error);
}

bool TreeWalker::descend(const char* name)
{
    const std::size_t parent = m_depth - 1;
    const int parentFolder = m_frames[parent].folder.get();
    const std::size_t mark = m_path.size();
    if (m_path.empty() || m_path.back() != '/')
        m_path.push_back('/');
    const std::size_t nameStart = m_path.size();
    m_path.append(name);
    if (!m_visitor.entersFolder(m_path)) {
        m_path.resize(mark);
        return true;
    }
    // An idle thread gets the biggest piece first, so that it is not woken again at once.
    if (m_crew && m_crew->wantsFolder())
        handOverShallowest();
    UniqueFd child(openFolder(parentFolder, name, m_mount));
    bool goOn = true;
    if (child.isOpen() && m_crew && m_crew->wantsFolder() && m_crew->handOver(*m_job, child, m_path)) {
        m_path.resize(mark); // another thread walks it
        return true;
    }
    if (child.isOpen()) {
        goOn = enter(std::move(child), nameStart);
        if (m_depth > parent + 1) {
            if (parent >= m_openLevels)
                m_frames[parent].folder.reset(); // listed whole; reopened on the way back
            return goOn;
        }
    } else if (errno == EXDEV) {
        goOn = m_visitor.mountPoint(m_path);
    } else if (errno == ELOOP || errno == ENOTDIR) {
        // No longer a folder: taken as what it is now.
        goOn = m_visitor.entry(parentFolder, std::string_view(m_path).substr(0, mark), name, DT_UNKNOWN, nullptr);
    } else if (errno != ENOENT) { // a folder that went meanwhile is skipped
        goOn = m_visitor.unreadableFolder(m_path, errno);
    }
    m_path.resize(mark);
    return goOn;
}

bool TreeWalker::handOverShallowest()
{
    for (std::size_t level = 0; level < m_depth; ++level) {
        Frame& frame = m_frames[level];
        if (!frame.folder.isOpen())
            continue;
        // Each entry is searched once, however often a thread is idle: a folder of many files
        // near the root is not read again for every folder below it.
        std::vector<FolderListing::Entry>& entries = frame.listing.entries;
        frame.unsearched = std::max(frame.unsearched, frame.next);
        const auto folder = std::find_if(entries.begin() + static_cast<std::ptrdiff_t>(frame.unsearched), entries.end(),
                                         [](const FolderListing::Entry& entry) { return entry.type == DT_DIR; });
        frame.unsearched = static_cast<std::size_t>(folder - entries.begin());
        if (folder == entries.end())
            continue;
        const char* name = frame.listing.name(*folder);
        std::string path(std::string_view(m_path).substr(0, frame.pathEnd));
        if (path.empty() || path.back() != '/')
            path.push_back('/');
        path.append(name);
        if (!m_visitor.entersFolder(path))
            return false;
        // What cannot be opened here is left in place, to be met and reported in its turn.
        UniqueFd child(openFolder(frame.folder.get(), name, m_mount));
        if (!child.isOpen() || !m_crew->handOver(*m_job, child, path))
            return false;
        // Taken out of the listing's unvisited part: moved to its front and passed.
        // What comes to stand in its place was searched already.
        std::iter_swap(folder, entries.begin() + static_cast<std::ptrdiff_t>(frame.next));
        ++frame.next;
        frame.unsearched = std::max(frame.unsearched + 1, frame.next);
        return true;
    }
    return false;
}

bool TreeWalker::climb()
{
    Frame& child = m_frames[m_depth - 1];
    --m_depth;
    if (m_depth == 0) {
        child.folder.reset();
        return true;
    }
    Frame& parent = m_frames[m_depth - 1];
    bool goOn = true;
    const int error = parent.folder.isOpen() ? 0 : regain(m_depth - 1, child.folder.get());
    child.folder.reset();
    if (error == 0) {
        goOn = m_visitor.leftFolder(parent.folder.get(), m_path.c_str() + child.nameStart, m_path);
    } else {
        // The rest of the parent cannot be reached; it is reported and left out.
        parent.next = parent.listing.entries.size();
        goOn = m_visitor.unreadableFolder(std::string_view(m_path).substr(0, parent.pathEnd), error);
    }
    m_path.resize(parent.pathEnd);
    return goOn;
}

int TreeWalker::regain(std::size_t index, int childFolder)
{
    Frame& frame = m_frames[index];
    if (childFolder >= 0) {
        UniqueFd up(m_calls.openAt(childFolder, "..", folderFlags));
        if (up.isOpen() && isFrame(up.get(), frame)) {
            frame.folder = std::move(up);
            return 0;
        }
    }
    // Moved meanwhile: down again by name from the nearest folder still open, each step
    // checked. The top folders are never let go, so one is always there.
    std::size_t open = index;
    while (!m_frames[open].folder.isOpen())
        --open;
    UniqueFd folder;
    int at = m_frames[open].folder.get();
    for (std::size_t level = open + 1; level <= index; ++level) {
        const Frame& step = m_frames[level];
        const std::string name = m_path.substr(step.nameStart, step.pathEnd - step.nameStart);
        UniqueFd next(openFolder(at, name.c_str(), m_mount));
        if (!next.isOpen())
            return errno;
        if (!isFrame(next.get(), step))
            return ESTALE;
        folder = std::move(next);
        at = folder.get();
    }
    frame.folder = std::move(folder);
    return 0;
}

bool TreeWalker::isFrame(int folder, const Frame& frame) const
{
    FileStatus status;
    return m_calls.statAt(folder, "", AT_EMPTY_PATH, status) == 0 && status.device == frame.device &&
           status.inode == frame.inode;
}

} // namespace kestrow
