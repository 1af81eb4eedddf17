#pragma once

#include "platform/UniqueFd.h"

#include <dirent.h>

namespace kestrow {

// A folder's listing, read entry by entry from a descriptor it takes over. Move-only; closes
// the folder when it goes. "." and ".." are never returned.
class DirectoryStream {
public:
    DirectoryStream() = default;
    // Takes `folder`; on failure (errno set) the stream is not open and the folder is closed.
    explicit DirectoryStream(UniqueFd folder);
    DirectoryStream(DirectoryStream&& other) noexcept;
    DirectoryStream& operator=(DirectoryStream&& other) noexcept;
    DirectoryStream(const DirectoryStream&) = delete;
    DirectoryStream& operator=(const DirectoryStream&) = delete;
    ~DirectoryStream();

    [[nodiscard]] bool isOpen() const noexcept { return m_directory != nullptr; }
    // The folder's descriptor, for the *at calls on its entries; owned by the stream.
    [[nodiscard]] int fd() const noexcept;
    // The next entry, or null at the end or on failure; then `errorCode` is 0 at the end and
    // the errno of the failure otherwise. The entry lives until the next call.
    [[nodiscard]] const dirent* next(int& errorCode);
    void rewind();

private:
    DIR* m_directory = nullptr;
};

} // namespace kestrow
