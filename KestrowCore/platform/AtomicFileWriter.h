#pragma once

#include "platform/FileManager.h"
#include "platform/SystemCalls.h"

#include <QByteArray>
#include <QString>

namespace kestrow {

// Replaces a file's content in one step: the bytes go to a new file beside it, which is then
// renamed over it, so a reader sees the old content or the new, never a mix, and a failure
// leaves the old file as it was. A symbolic link in the file's place is refused: it is
// neither written through nor replaced, as either would change something the caller did not
// name.
class AtomicFileWriter {
public:
    // `systemCalls` must outlive the writer.
    explicit AtomicFileWriter(const SystemCalls& systemCalls = *SystemCalls::real());

    // Writes `bytes` to `path` (absolute). With `createFolders` a missing folder is made, with
    // the folders above it. An existing file keeps its permissions; a new one gets the default
    // ones. On failure `errorDescription` says why (the system's text) and nothing changed
    // beyond the folders made.
    [[nodiscard]] FileOperationResult write(const QString& path, const QByteArray& bytes, bool createFolders) const;

private:
    // 0, or the errno of the first folder that could not be made.
    [[nodiscard]] int makeFolders(const QByteArray& folder) const;

    const SystemCalls& m_systemCalls;
};

} // namespace kestrow
