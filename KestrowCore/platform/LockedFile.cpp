#include "platform/LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>

namespace kestrow {

namespace {

// How often the name is opened again when the file it held was replaced while we waited for
// the lock; past that the replacing never stops, and the last one opened is kept.
constexpr int reopenAttempts = 8;

LockedFile::Refusal refusalOf(const FileStatus& status)
{
    if (status.isSymbolicLink())
        return LockedFile::Refusal::symbolicLink;
    return status.isRegularFile() ? LockedFile::Refusal::none : LockedFile::Refusal::notRegularFile;
}

} // namespace

LockedFile::LockedFile(const SystemCalls& calls, UniqueFd fd, Refusal refusal, int errorCode)
    : m_calls(&calls)
    , m_fd(std::move(fd))
    , m_refusal(refusal)
    , m_errorCode(errorCode)
{
}

LockedFile LockedFile::open(const SystemCalls& calls, int folder, const QByteArray& name, Access access,
                            std::optional<mode_t> createMode)
{
    const auto refused = [&calls](Refusal refusal, int errorCode = 0) {
        return LockedFile(calls, UniqueFd(), refusal, errorCode);
    };
    // Not blocking: opening a FIFO would otherwise wait for a writer. No effect on a file.
    const int flags = (access == Access::read ? O_RDONLY : O_RDWR | O_APPEND) | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const int lockOperation = access == Access::read ? LOCK_SH : LOCK_EX;

    for (int attempt = 0;; ++attempt) {
        UniqueFd fd;
        if (createMode) {
            fd = UniqueFd(calls.openAt(folder, name.constData(), flags | O_CREAT | O_EXCL, *createMode));
            if (fd.isOpen())
                (void)calls.changeMode(fd.get(), *createMode); // a wish: the file is what counts
            else if (errno != EEXIST)
                return refused(Refusal::creationFailed, errno);
        }
        if (!fd.isOpen()) {
            FileStatus status;
            if (calls.statAt(folder, name.constData(), AT_SYMLINK_NOFOLLOW, status) != 0)
                return errno == ENOENT && !createMode ? refused(Refusal::absent) : refused(Refusal::failed, errno);
            if (const Refusal refusal = refusalOf(status); refusal != Refusal::none)
                return refused(refusal);
            fd = UniqueFd(calls.openAt(folder, name.constData(), flags));
            if (!fd.isOpen()) {
                if (errno == ELOOP)
                    return refused(Refusal::symbolicLink);
                if (errno == EISDIR || errno == ENXIO)
                    return refused(Refusal::notRegularFile);
                return refused(Refusal::failed, errno);
            }
        }
        FileStatus opened;
        if (calls.statAt(fd.get(), "", AT_EMPTY_PATH, opened) != 0)
            return refused(Refusal::failed, errno);
        if (!opened.isRegularFile())
            return refused(Refusal::notRegularFile);
        if (calls.lock(fd.get(), lockOperation) != 0)
            return refused(Refusal::failed, errno);

        // The lock holds the file the name had when it was opened; if another file took the
        // name meanwhile, that is the one the other holders lock.
        FileStatus named;
        const bool stillNamed =
            calls.statAt(folder, name.constData(), AT_SYMLINK_NOFOLLOW, named) == 0 && named.isSameObject(opened);
        if (stillNamed || attempt + 1 == reopenAttempts)
            return LockedFile(calls, std::move(fd));
    }
}

ssize_t LockedFile::read(char* buffer, size_t size) const
{
    return m_calls->read(m_fd.get(), buffer, size);
}

LockedFile::AppendOutcome LockedFile::append(QByteArrayView bytes) const
{
    FileStatus before;
    if (m_calls->statAt(m_fd.get(), "", AT_EMPTY_PATH, before) != 0)
        return {errno};
    const ssize_t written = m_calls->write(m_fd.get(), bytes.data(), static_cast<size_t>(bytes.size()));
    if (written != static_cast<ssize_t>(bytes.size())) {
        const int errorCode = written < 0 ? errno : 0;
        (void)m_calls->truncate(m_fd.get(), before.size);
        return {errorCode, written < 0 ? -1 : static_cast<qsizetype>(written)};
    }
    if (m_calls->sync(m_fd.get()) != 0)
        return {errno};
    return {};
}

} // namespace kestrow
