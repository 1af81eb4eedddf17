#pragma once

#include <cstdint>

namespace kestrow {

// What one lstat (statx on Linux) says of a path, in the units the measuring and the acting
// need.
struct FileStatus {
    enum class Type { regular, directory, symbolicLink, other };

    Type type = Type::other;
    std::int64_t size = 0;          // file length in bytes
    std::int64_t allocatedSize = 0; // blocks x 512
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 1;
    std::int64_t accessedNanoseconds = 0; // since the Unix epoch
    std::int64_t modifiedNanoseconds = 0;
    std::uint32_t mode = 0; // permission bits, sticky and set-id bits included
    std::uint32_t ownerId = 0;
    std::uint64_t mountId = 0;   // the mount the entry lies on; 0 where the system does not say
    bool isMountRoot = false;    // the entry is where a file system (or a bind mount) is attached
    std::uint32_t fileFlags = 0; // BSD flags (st_flags) where the system keeps them (status()); 0 elsewhere

    [[nodiscard]] bool isSameObject(const FileStatus& other) const
    {
        return device == other.device && inode == other.inode;
    }

    [[nodiscard]] bool isDirectory() const { return type == Type::directory; }
    [[nodiscard]] bool isRegularFile() const { return type == Type::regular; }
    [[nodiscard]] bool isSymbolicLink() const { return type == Type::symbolicLink; }
};

} // namespace kestrow
