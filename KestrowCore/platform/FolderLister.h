#pragma once

#include "platform/SystemCalls.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kestrow {

// What one folder holds, "." and ".." left out: each name with the listing's DT_ type.
struct FolderListing {
    struct Entry {
        std::uint32_t offset; // into `names`
        unsigned char type;   // DT_ value
    };
    std::string names; // each name ended by a NUL
    std::vector<Entry> entries;

    [[nodiscard]] const char* name(const Entry& entry) const { return names.data() + entry.offset; }
};

// Lists folders whole, through one reading buffer kept from folder to folder: getdents64 on
// Linux, so that a listing costs its reads and nothing else; readdir elsewhere. Use one per
// thread.
class FolderLister {
public:
    explicit FolderLister(const SystemCalls& calls);

    // Replaces `listing` with what the open `folder` holds, read from its start; the folder
    // must not have been read before. Returns 0, or the errno of a failed read, in which case
    // what was read before it stays in `listing`.
    [[nodiscard]] int list(int folder, FolderListing& listing);

private:
    [[maybe_unused]] const SystemCalls& m_calls; // readdir elsewhere reads without it
#if defined(__linux__)
    static constexpr std::size_t bufferBytes = 32 * 1024;
    std::unique_ptr<std::uint64_t[]> m_buffer; // 8-byte aligned, as the records are
#endif
};

} // namespace kestrow
