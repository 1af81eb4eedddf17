#include "apps/FootprintMeasurer.h"

#include "platform/NativePath.h"
#include "platform/TreeWalker.h"
#include "support/TimeStamp.h"

#include <dirent.h>
#include <fcntl.h>

namespace kestrow {

namespace {

void noteModified(const FileStatus& status, SizingMetrics& metrics)
{
    const QDateTime modified = TimeStamp::fromUnixNanoseconds(status.modifiedNanoseconds);
    if (!metrics.lastModifiedDate || modified > *metrics.lastModifiedDate)
        metrics.lastModifiedDate = modified;
}

} // namespace

// Every entry below a folder: a link adds one to the count and nothing else, any other entry
// that is not a folder adds a file. Unreadable folders are passed over.
class FootprintMeasurer::Walk final : public TreeWalker::Visitor {
public:
    Walk(FootprintMeasurer& measurer, SizingMetrics& metrics)
        : m_measurer(measurer)
        , m_metrics(metrics)
    {
    }

    bool entry(int folder, std::string_view, const char* name, unsigned char type, const FileStatus* given) override
    {
        if (type == DT_LNK) {
            ++m_metrics.fileCount;
            return true;
        }
        FileStatus status;
        if (given)
            status = *given;
        else if (m_measurer.m_fileManager.systemCalls().statAt(folder, name, AT_SYMLINK_NOFOLLOW, status) != 0)
            return true;
        if (status.isDirectory())
            return true;
        ++m_metrics.fileCount;
        if (!status.isSymbolicLink()) {
            m_measurer.addFile(status, m_metrics);
            noteModified(status, m_metrics);
        }
        return true;
    }
    bool leftFolder(int, const char*, std::string_view) override { return true; }
    bool unreadableFolder(std::string_view, int) override { return true; }
    bool mountPoint(std::string_view) override { return true; }

private:
    FootprintMeasurer& m_measurer;
    SizingMetrics& m_metrics;
};

FootprintMeasurer::FootprintMeasurer(const FileManager& fileManager)
    : m_fileManager(fileManager)
{
}

SizingMetrics FootprintMeasurer::measureItem(const QString& path)
{
    SizingMetrics metrics;
    const std::optional<FileStatus> status = m_fileManager.status(path);
    if (!status)
        return metrics;
    if (status->isSymbolicLink()) {
        metrics.logicalBytes = status->size;
        metrics.fileCount = 1;
        metrics.isSymlink = true;
        noteModified(*status, metrics);
        return metrics;
    }
    if (!status->isDirectory()) {
        addFile(*status, metrics);
        metrics.fileCount = 1;
        noteModified(*status, metrics);
        return metrics;
    }
    metrics.isDirectory = true;
    const QByteArray native = NativePath::encode(path);
    const SystemCalls& calls = m_fileManager.systemCalls();
    UniqueFd folder(calls.openAt(AT_FDCWD, native.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
    if (!folder.isOpen())
        return metrics;
    Walk walk(*this, metrics);
    TreeWalker(calls, walk).walk(std::move(folder), native.toStdString());
    return metrics;
}

void FootprintMeasurer::addFile(const FileStatus& status, SizingMetrics& metrics)
{
    if (!m_seenInodes.emplace(status.device, status.inode).second)
        return;
    metrics.allocatedBytes += status.allocatedSize;
    metrics.logicalBytes += status.size;
}

} // namespace kestrow
