#pragma once

#include "platform/FileStatus.h"
#include "platform/FolderLister.h"
#include "platform/SystemCalls.h"
#include "platform/UniqueFd.h"
#include "platform/WalkCrew.h"

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {

// Depth first over a folder tree through descriptors, never following a link. Each folder is
// listed once, whole, before anything below it is entered, so that however deep the tree only
// the top `openLevels` folders and the one being walked need to stay open: a deeper folder is
// let go while its sub-folders are walked and opened again through ".." (checked against its
// device and inode, else reached again by name from the nearest folder still open). Paths are
// native bytes, kept only to name what is reported. In a crew, a sub-folder may go to another
// thread instead, with what it holds; that folder then gets no `leftFolder`.
class TreeWalker {
public:
    // What the walk meets, on the walking thread. Each call returns false to end the walk.
    class Visitor {
    public:
        virtual ~Visitor() = default;
        // An entry of the open folder `folder` (at `folderPath`) that is not a folder: `type` is
        // the listing's DT_ value, `status` is given when the walker had to take it to learn
        // the type.
        virtual bool entry(int folder, std::string_view folderPath, const char* name, unsigned char type,
                           const FileStatus* status) = 0;
        // The folder `name` in the open `folder`, at `path`, after all it holds was walked.
        virtual bool leftFolder(int folder, const char* name, std::string_view path) = 0;
        // A folder (the root included) that could not be opened, listed or opened again.
        virtual bool unreadableFolder(std::string_view path, int errorCode) = 0;
        // A folder where another mount is attached; never entered when the walk stays on one.
        virtual bool mountPoint(std::string_view path) = 0;
        // Before each folder is listed, so that the walk can be held back.
        virtual bool listingFolder() { return true; }
        // Before the sub-folder at `path` is entered; false passes it over, with all it holds.
        virtual bool entersFolder(std::string_view path)
        {
            (void)path;
            return true;
        }
    };

    static constexpr std::size_t openLevels = 64;

    TreeWalker(const SystemCalls& calls, Visitor& visitor, std::stop_token stop = {});
    // One walker of `job` in `crew`, on one of the crew's threads: it hands sub-folders over
    // when the crew wants them, and keeps fewer folders open, its share of `openLevels`.
    TreeWalker(const SystemCalls& calls, Visitor& visitor, WalkCrew& crew, WalkCrew::Job& job);

    // Walks what the open folder `root` at `path` holds. With `mount` (the status of a folder
    // on the mount to stay on), a sub-folder where another mount is attached, a bind mount of
    // the same file system included, goes to `mountPoint` and is not entered. False when the
    // visitor ended the walk or a stop was requested.
    bool walk(UniqueFd root, std::string path, const FileStatus* mount = nullptr);

    // Opens the folder `name` in `folder` without following a link; with `mount`, fails with
    // EXDEV when `name` is a mount point other than `mount`'s.
    [[nodiscard]] int openFolder(int folder, const char* name, const FileStatus* mount);

private:
    struct Frame {
        UniqueFd folder; // open unless let go while its sub-folders are walked
        FolderListing listing;
        std::size_t next = 0;
        std::size_t unsearched = 0; // entries before it hold no folder left to hand over
        std::size_t nameStart = 0;  // of its own name in m_path
        std::size_t pathEnd = 0;
        std::uint64_t device = 0; // taken only for folders that may be let go
        std::uint64_t inode = 0;
    };

    bool enter(UniqueFd folder, std::size_t nameStart);
    bool descend(const char* name);
    // Hands the crew the unvisited sub-folder nearest the root, the largest share of the work
    // at hand; false when there is none to give.
    bool handOverShallowest();
    bool climb();
    int regain(std::size_t index, int childFolder);
    [[nodiscard]] bool isFrame(int folder, const Frame& frame) const;

    const SystemCalls& m_calls;
    Visitor& m_visitor;
    std::stop_token m_stop;
    WalkCrew* m_crew = nullptr;
    WalkCrew::Job* m_job = nullptr;
    std::size_t m_openLevels = openLevels;
    FolderLister m_lister;
    const FileStatus* m_mount = nullptr;
    bool m_constrainedOpens = true; // until the system says it has no openat2
    std::string m_path;
    std::vector<Frame> m_frames; // reused from level to level, so listings keep their buffers
    std::size_t m_depth = 0;
};

} // namespace kestrow
