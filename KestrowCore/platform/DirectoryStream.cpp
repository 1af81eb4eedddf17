#include "platform/DirectoryStream.h"

#include <cerrno>
#include <utility>

namespace kestrow {

DirectoryStream::DirectoryStream(UniqueFd folder)
{
    if (!folder.isOpen())
        return;
    m_directory = ::fdopendir(folder.get());
    if (m_directory)
        (void)folder.release();
}

DirectoryStream::DirectoryStream(DirectoryStream&& other) noexcept
    : m_directory(std::exchange(other.m_directory, nullptr))
{
}

DirectoryStream& DirectoryStream::operator=(DirectoryStream&& other) noexcept
{
    if (this != &other) {
        if (m_directory)
            ::closedir(m_directory);
        m_directory = std::exchange(other.m_directory, nullptr);
    }
    return *this;
}

DirectoryStream::~DirectoryStream()
{
    if (m_directory)
        ::closedir(m_directory);
}

int DirectoryStream::fd() const noexcept
{
    return m_directory ? ::dirfd(m_directory) : -1;
}

const dirent* DirectoryStream::next(int& errorCode)
{
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(m_directory);
        if (!entry) {
            errorCode = errno;
            return nullptr;
        }
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
            continue;
        errorCode = 0;
        return entry;
    }
}

void DirectoryStream::rewind()
{
    ::rewinddir(m_directory);
}

} // namespace kestrow
