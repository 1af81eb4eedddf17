#include "platform/AtomicFileWriter.h"

#include "platform/SystemMessage.h"

#include "platform/NativePath.h"
#include "platform/UniqueFd.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <system_error>

namespace kestrow {

namespace {

// Names tried for the new file before giving up, should others be taken.
constexpr int temporaryNameAttempts = 16;

constexpr mode_t defaultFileMode = 0666; // narrowed by the process's umask
constexpr mode_t defaultFolderMode = 0777;

FileOperationResult failure(int errorCode)
{
    return {false, std::nullopt, SystemMessage::of(errorCode)};
}

} // namespace

AtomicFileWriter::AtomicFileWriter(const SystemCalls& systemCalls)
    : m_systemCalls(systemCalls)
{
}

FileOperationResult AtomicFileWriter::write(const QString& path, const QByteArray& bytes, bool createFolders) const
{
    const QByteArray native = NativePath::encode(path);
    const qsizetype slash = native.lastIndexOf('/');
    const QByteArray name = native.mid(slash + 1);
    if (slash < 0 || name.isEmpty() || name == "." || name == "..")
        return failure(EINVAL);
    const QByteArray folderPath = slash == 0 ? QByteArray("/") : native.left(slash);
    const auto openFolder = [&] {
        return UniqueFd(m_systemCalls.openAt(AT_FDCWD, folderPath.constData(), O_RDONLY | O_DIRECTORY));
    };
    UniqueFd folder = openFolder();
    if (!folder.isOpen() && errno == ENOENT && createFolders) {
        if (const int error = makeFolders(folderPath); error != 0)
            return failure(error);
        folder = openFolder();
    }
    if (!folder.isOpen())
        return failure(errno);

    std::optional<mode_t> keptMode;
    FileStatus existing;
    if (m_systemCalls.statAt(folder.get(), name.constData(), AT_SYMLINK_NOFOLLOW, existing) == 0) {
        if (existing.isSymbolicLink())
            return {false, std::nullopt,
                    QStringLiteral("it is a symbolic link, which is neither written through nor replaced")};
        keptMode = existing.mode & 07777;
    } else if (errno != ENOENT) {
        return failure(errno);
    }

    QByteArray temporaryName;
    UniqueFd temporary;
    for (int attempt = 0; attempt < temporaryNameAttempts && !temporary.isOpen(); ++attempt) {
        temporaryName = '.' + name + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        temporary = UniqueFd(m_systemCalls.openAt(folder.get(), temporaryName.constData(),
                                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, defaultFileMode));
        if (!temporary.isOpen() && errno != EEXIST)
            break;
    }
    if (!temporary.isOpen())
        return failure(errno);

    int error = 0;
    if (keptMode && m_systemCalls.changeMode(temporary.get(), *keptMode) != 0)
        error = errno;
    for (qsizetype written = 0; error == 0 && written < bytes.size();) {
        const ssize_t count = m_systemCalls.write(temporary.get(), bytes.constData() + written,
                                                  static_cast<size_t>(bytes.size() - written));
        if (count < 0)
            error = errno;
        else
            written += count;
    }
    if (error == 0 && m_systemCalls.sync(temporary.get()) != 0)
        error = errno;
    // The rename replaces the directory entry itself: a link that took the name meanwhile is
    // replaced, not followed.
    if (error == 0 &&
        m_systemCalls.renameAt(folder.get(), temporaryName.constData(), folder.get(), name.constData()) != 0)
        error = errno;
    if (error != 0) {
        (void)m_systemCalls.unlinkAt(folder.get(), temporaryName.constData(), 0);
        return failure(error);
    }
    return {true, std::nullopt, {}};
}

int AtomicFileWriter::makeFolders(const QByteArray& folder) const
{
    for (qsizetype end = folder.indexOf('/', 1);; end = folder.indexOf('/', end + 1)) {
        const QByteArray prefix = end < 0 ? folder : folder.left(end);
        if (m_systemCalls.makeDirectoryAt(AT_FDCWD, prefix.constData(), defaultFolderMode) != 0 && errno != EEXIST)
            return errno;
        if (end < 0)
            return 0;
    }
}

} // namespace kestrow
