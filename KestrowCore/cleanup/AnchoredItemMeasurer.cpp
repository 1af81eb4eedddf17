#include "cleanup/AnchoredItemMeasurer.h"

#include <algorithm>

namespace kestrow {

namespace {

// Every regular file below the root, each name counted: no hard-link bookkeeping here beyond
// the tally of files that have other names.
class CountingSink : public WalkSink {
public:
    explicit CountingSink(const QString& root)
        : m_root(root)
    {
    }

    void regularFile(const FileStatus& status) override
    {
        ++fileCount;
        allocatedBytes += status.allocatedSize;
        logicalBytes += status.size;
        hardLinks.add(status);
    }

    void unreadableDirectory(const QString& path, int) override
    {
        if (path == m_root)
            rootUnreadable = true;
    }

    void mountPoint(const QString& path) override { mountPoints.append(path); }

    [[nodiscard]] std::unique_ptr<WalkSink> split() const override { return std::make_unique<CountingSink>(m_root); }

    void join(WalkSink& part) override
    {
        const auto& other = static_cast<const CountingSink&>(part);
        allocatedBytes += other.allocatedBytes;
        logicalBytes += other.logicalBytes;
        fileCount += other.fileCount;
        rootUnreadable = rootUnreadable || other.rootUnreadable;
        mountPoints.append(other.mountPoints);
        hardLinks.merge(other.hardLinks);
    }

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    bool rootUnreadable = false;
    QStringList mountPoints;
    HardLinkTally hardLinks;

private:
    const QString& m_root;
};

} // namespace

AnchoredItemMeasure AnchoredItemMeasurer::measure(const FileManager& fileManager, const AnchoredItem& item)
{
    // A link is measured as itself, as it is what moves; so is any other non-folder.
    if (!item.status.isDirectory()) {
        AnchoredItemMeasure measure{
            .metrics = {.allocatedBytes = item.status.allocatedSize, .logicalBytes = item.status.size, .fileCount = 1}};
        measure.hardLinks.add(item.status);
        return measure;
    }
    CountingSink sink(item.path);
    fileManager.walk(item, sink, {}, WalkOptions::allProcessors());
    // In path order, whichever thread met which.
    sink.mountPoints.sort();
    AnchoredItemMeasure measure{.mountPoints = sink.mountPoints, .hardLinks = sink.hardLinks};
    if (sink.rootUnreadable && sink.fileCount == 0)
        measure.metrics = {.fileCount = 1};
    else
        measure.metrics = {.allocatedBytes = sink.allocatedBytes,
                           .logicalBytes = sink.logicalBytes,
                           .fileCount = std::max<std::int64_t>(sink.fileCount, 1)};
    return measure;
}

} // namespace kestrow
