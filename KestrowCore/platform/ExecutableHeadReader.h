#pragma once

#include <QByteArray>
#include <QString>

namespace kestrow {

class FileManager;

// Which of the two 64-bit processor families an executable's head names.
struct ExecutableProcessors {
    bool arm64 = false;
    bool x86_64 = false;

    friend bool operator==(const ExecutableProcessors&, const ExecutableProcessors&) = default;
};

// Reads the head of an executable: Mach-O, thin or fat, in either byte order; on Linux also
// ELF. Nothing else of the file is consulted.
class ExecutableHeadReader {
public:
    // The most that is read of a file.
    static constexpr qsizetype headBytes = 4096;

    // The processors named by `head`, the first bytes of a file. A thin 32-bit Mach-O, a Java
    // class file (which shares the fat magic) and anything unknown name neither.
    [[nodiscard]] static ExecutableProcessors processors(const QByteArray& head);
    // The same for the file at `path`, links followed; a missing or unreadable file names
    // neither.
    [[nodiscard]] static ExecutableProcessors readFile(const FileManager& fileManager, const QString& path);
};

} // namespace kestrow
