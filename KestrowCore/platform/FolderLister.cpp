#include "platform/FolderLister.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>

#if !defined(__linux__)
#include "platform/DirectoryStream.h"

#include <unistd.h>
#endif

namespace kestrow {

namespace {

void add(FolderListing& listing, const char* name, std::size_t length, unsigned char type)
{
    if (name[0] == '.' && (length == 1 || (length == 2 && name[1] == '.')))
        return;
    listing.entries.push_back({static_cast<std::uint32_t>(listing.names.size()), type});
    listing.names.append(name, length + 1);
}

} // namespace

#if defined(__linux__)

FolderLister::FolderLister(const SystemCalls& calls)
    : m_calls(calls)
    , m_buffer(std::make_unique_for_overwrite<std::uint64_t[]>(bufferBytes / sizeof(std::uint64_t)))
{
}

int FolderLister::list(int folder, FolderListing& listing)
{
    listing.names.clear();
    listing.entries.clear();
    const char* bytes = reinterpret_cast<const char*>(m_buffer.get());
    while (true) {
        const ssize_t count = m_calls.readDirectory(folder, m_buffer.get(), bufferBytes);
        if (count <= 0)
            return count == 0 ? 0 : errno;
        // Records of the kernel's dirent64 form, read field by field: a record is only as long
        // as its name needs.
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            unsigned short length = 0;
            std::memcpy(&length, bytes + at + offsetof(dirent64, d_reclen), sizeof length);
            const unsigned char type = static_cast<unsigned char>(bytes[at + offsetof(dirent64, d_type)]);
            const char* name = bytes + at + offsetof(dirent64, d_name);
            add(listing, name, std::strlen(name), type);
            at += length;
        }
    }
}

#else

FolderLister::FolderLister(const SystemCalls& calls)
    : m_calls(calls)
{
}

int FolderLister::list(int folder, FolderListing& listing)
{
    listing.names.clear();
    listing.entries.clear();
    // The stream takes the descriptor it reads; the folder's own stays with the caller.
    DirectoryStream stream{UniqueFd(::dup(folder))};
    if (!stream.isOpen())
        return errno;
    int error = 0;
    while (const dirent* entry = stream.next(error))
        add(listing, entry->d_name, std::strlen(entry->d_name), entry->d_type);
    return error;
}

#endif

} // namespace kestrow
