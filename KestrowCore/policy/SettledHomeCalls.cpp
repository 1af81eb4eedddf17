#include "policy/SettledHomeCalls.h"

#include "platform/NativePath.h"

#include <cstring>
#include <fcntl.h>

namespace kestrow {

SettledHomeCalls::SettledHomeCalls(const QString& homePath)
    : m_home(homePath.startsWith(QLatin1Char('/')) ? NativePath::encode(homePath) : QByteArray())
{
    for (qsizetype length = 1; length <= m_home.size(); ++length) {
        if (length < m_home.size() && m_home.at(length) != '/')
            continue;
        if (m_home.at(length - 1) == '/')
            continue; // the root, or an empty component: never looked at on their own
        Look look{.length = length};
        const QByteArray name = m_home.left(length);
        if (SystemCalls::statAt(AT_FDCWD, name.constData(), AT_SYMLINK_NOFOLLOW, look.status) != 0)
            look.errorCode = errno;
        m_looks.push_back(look);
    }
}

int SettledHomeCalls::statAt(int folder, const char* name, int flags, FileStatus& status) const
{
    if (folder == AT_FDCWD && flags == AT_SYMLINK_NOFOLLOW) {
        const auto length = static_cast<qsizetype>(std::strlen(name));
        // Looks are kept at the lengths of the home's folders only, so a name of such a length
        // that begins the home's is one of them.
        if (length <= m_home.size() && std::memcmp(name, m_home.constData(), static_cast<size_t>(length)) == 0) {
            for (const Look& look : m_looks) {
                if (look.length != length)
                    continue;
                if (look.errorCode != 0) {
                    errno = look.errorCode;
                    return -1;
                }
                status = look.status;
                return 0;
            }
        }
    }
    return SystemCalls::statAt(folder, name, flags, status);
}

} // namespace kestrow
