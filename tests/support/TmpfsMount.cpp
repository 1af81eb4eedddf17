#include "TmpfsMount.h"

#include "platform/NativePath.h"

#include <cerrno>
#include <cstring>
#include <sys/mount.h>

namespace kestrow::test {

TmpfsMount::TmpfsMount(const QString& folder, const QByteArray& options)
    : m_folder(NativePath::encode(folder))
{
    m_mounted = ::mount("tmpfs", m_folder.constData(), "tmpfs", 0, options.constData()) == 0;
    if (!m_mounted)
        m_error = QStringLiteral("mounting a tmpfs on %1 was refused: %2")
                      .arg(folder, QString::fromUtf8(std::strerror(errno)));
}

TmpfsMount::~TmpfsMount()
{
    // Detached, so that a descriptor a failed test left open cannot keep it mounted.
    if (m_mounted)
        ::umount2(m_folder.constData(), MNT_DETACH);
}

} // namespace kestrow::test
