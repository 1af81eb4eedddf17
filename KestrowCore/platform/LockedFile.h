#pragma once

#include "platform/SystemCalls.h"
#include "platform/UniqueFd.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace kestrow {

// A regular file opened by name in an open folder, never through a symbolic link, and held
// under an advisory lock (flock) for as long as this lives: shared to read, exclusive to
// append, so that every process that opens the file this way takes its turn. Move-only.
class LockedFile {
public:
    enum class Access { read, append };
    enum class Refusal {
        none,
        absent,         // nothing has the name (and none was to be made)
        symbolicLink,   // the name is a link, which is never followed
        notRegularFile, // a folder, a FIFO, a device...
        creationFailed, // it was absent and could not be made: see `errorCode`
        failed,         // the system refused: see `errorCode`
    };

    // Opens `name` in `folder` and waits for its lock. With `createMode` an absent file is
    // made first, exclusively and with that mode (the umask notwithstanding), so that a file
    // another process made meanwhile is opened, never replaced. Opening never waits on a FIFO.
    // On failure the file is not open and `refusal` says why. `calls` must outlive the file.
    [[nodiscard]] static LockedFile open(const SystemCalls& calls, int folder, const QByteArray& name, Access access,
                                         std::optional<mode_t> createMode = std::nullopt);

    [[nodiscard]] Refusal refusal() const { return m_refusal; }
    // errno when `refusal` is `creationFailed` or `failed`.
    [[nodiscard]] int errorCode() const { return m_errorCode; }

    // Up to `size` bytes from the current position: 0 at the end, -1 with errno on failure.
    [[nodiscard]] ssize_t read(char* buffer, size_t size) const;

    struct AppendOutcome {
        int errorCode = 0;      // errno of the failing step; 0 when all went through
        qsizetype written = -1; // bytes of a short write (cut back), else -1
        [[nodiscard]] bool succeeded() const { return errorCode == 0 && written < 0; }
    };
    // Appends `bytes` with one write and forces the file to disk. A write that fails or is
    // short is cut back to the length before, so that the file never keeps a part of `bytes`;
    // when only the forcing fails the bytes stay.
    [[nodiscard]] AppendOutcome append(QByteArrayView bytes) const;

private:
    LockedFile(const SystemCalls& calls, UniqueFd fd, Refusal refusal = Refusal::none, int errorCode = 0);

    const SystemCalls* m_calls;
    UniqueFd m_fd;
    Refusal m_refusal;
    int m_errorCode;
};

} // namespace kestrow
