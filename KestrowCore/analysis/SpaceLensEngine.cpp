#include "analysis/SpaceLensEngine.h"

#include "analysis/BoundedTaskPool.h"
#include "analysis/SpaceLensError.h"
#include "analysis/UsageSink.h"
#include "platform/BundleFolders.h"
#include "platform/FolderLister.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "safety/FileCategorizer.h"
#include "support/TimeStamp.h"

#include <QDateTime>

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <mutex>
#include <string>

namespace kestrow {

namespace {

// A visible entry of a listed folder, with its own lstat.
struct ListedEntry {
    std::string path; // native
    FileStatus status;
};

// What a folder lists, hidden entries left out; nothing when it cannot be read.
std::optional<std::vector<ListedEntry>> listVisible(const SystemCalls& calls, const std::string& path, bool followLink)
{
    const UniqueFd folder(
        calls.openAt(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followLink ? 0 : O_NOFOLLOW)));
    if (!folder.isOpen())
        return std::nullopt;
    FolderListing listing;
    if (FolderLister(calls).list(folder.get(), listing) != 0)
        return std::nullopt;
    std::vector<ListedEntry> entries;
    entries.reserve(listing.entries.size());
    const std::string prefix = path.ends_with('/') ? path : path + '/';
    for (const FolderListing::Entry& entry : listing.entries) {
        const char* name = listing.name(entry);
        if (name[0] == '.')
            continue;
        ListedEntry listed{prefix + name, {}};
        // An entry gone since the listing is simply missing.
        if (calls.statAt(folder.get(), name, AT_SYMLINK_NOFOLLOW, listed.status) == 0)
            entries.push_back(std::move(listed));
    }
    return entries;
}

// Allocated and logical bytes and regular files of all that a folder holds, hidden files
// included, bundles inside passed over.
UsageSink measureFolder(const FileManager& fileManager, const std::string& path, const std::stop_token& stop)
{
    UsageSink sink;
    fileManager.walk(NativePath::decode(path.data(), static_cast<qsizetype>(path.size())), sink, stop,
                     {.threads = 1, .pace = {}, .entersBundles = false});
    return sink;
}

} // namespace

// One build: every node is a task of the pool. A folder's node is finished by whichever of its
// children ends last, so no task ever waits for another.
class SpaceLensEngine::Build {
public:
    using Deliver = std::function<void(std::optional<SpaceNode>)>;

    Build(const FileManager& fileManager, BoundedTaskPool& pool, std::stop_token stop, int maxDepth,
          const Progress& progress)
        : m_fileManager(fileManager)
        , m_pool(pool)
        , m_stop(std::move(stop))
        , m_maxDepth(maxDepth)
        , m_progress(progress)
    {
    }

    // Builds the node of what lies at `path`, whose status is `status`, and hands it on.
    void node(const std::string& path, const FileStatus& status, int depth, const Deliver& deliver)
    {
        SpaceNode node;
        node.id = QUuid::createUuid();
        node.path = NativePath::decode(path.data(), static_cast<qsizetype>(path.size()));
        node.name = PathText::lastComponent(node.path);
        node.isDirectory = status.isDirectory();
        node.lastAccessedDate = TimeStamp::fromUnixNanoseconds(status.accessedNanoseconds);
        node.lastModifiedDate = TimeStamp::fromUnixNanoseconds(status.modifiedNanoseconds);
        if (!node.isDirectory) {
            node.allocatedSizeBytes = status.allocatedSize;
            node.logicalSizeBytes = status.size;
            leaf(std::move(node), deliver);
            return;
        }
        // A bundle is one item, but one the user opened is shown inside.
        if (depth > 0 && BundleFolders::isBundle(path)) {
            const UsageSink usage = measureFolder(m_fileManager, path, m_stop);
            node.allocatedSizeBytes = usage.allocatedBytes();
            node.logicalSizeBytes = usage.logicalBytes();
            leaf(std::move(node), deliver);
            return;
        }
        std::optional<std::vector<ListedEntry>> entries = listVisible(m_fileManager.systemCalls(), path, depth == 0);
        if (!entries) {
            // Unreadable: shown as an empty folder.
            node.children.emplace();
            done(std::move(node), deliver);
            return;
        }
        if (depth >= m_maxDepth)
            measure(std::move(node), std::move(*entries), deliver);
        else
            list(std::move(node), std::move(*entries), depth, deliver);
    }

private:
    // The children of one listed folder as they come in.
    struct Gathering {
        SpaceNode node;
        Deliver deliver;
        std::mutex mutex;
        std::vector<SpaceNode> children;
        std::size_t pending = 0;
    };

    // The sums of one folder at the depth limit as its entries are measured.
    struct Measuring {
        SpaceNode node;
        Deliver deliver;
        std::atomic<std::int64_t> allocated{0};
        std::atomic<std::int64_t> logical{0};
        std::atomic<std::int64_t> files{0};
        std::atomic<std::size_t> pending{0};
    };

    void leaf(SpaceNode node, const Deliver& deliver)
    {
        node.itemCount = 1;
        node.fileCategory = FileCategorizer::categorize(node.path);
        done(std::move(node), deliver);
    }

    void done(SpaceNode node, const Deliver& deliver)
    {
        if (m_progress)
            m_progress(node.path);
        deliver(std::move(node));
    }

    void list(SpaceNode node, std::vector<ListedEntry> entries, int depth, const Deliver& deliver)
    {
        auto gathering = std::make_shared<Gathering>();
        gathering->node = std::move(node);
        gathering->deliver = deliver;
        gathering->children.reserve(entries.size());
        gathering->pending = entries.size() + 1; // held until every child is handed out
        const Deliver collect = [this, gathering](std::optional<SpaceNode> child) {
            gather(*gathering, std::move(child));
        };
        for (ListedEntry& entry : entries) {
            m_pool.submit([this, entry = std::move(entry), depth, collect] {
                if (m_stop.stop_requested())
                    collect(std::nullopt);
                else
                    this->node(entry.path, entry.status, depth + 1, collect);
            });
        }
        collect(std::nullopt);
    }

    void gather(Gathering& gathering, std::optional<SpaceNode> finished)
    {
        std::unique_lock lock(gathering.mutex);
        if (finished)
            gathering.children.push_back(std::move(*finished));
        if (--gathering.pending > 0)
            return;
        lock.unlock();
        SpaceNode& node = gathering.node;
        std::vector<SpaceNode>& children = gathering.children;
        // Stable over the order of finishing.
        std::stable_sort(children.begin(), children.end(), [](const SpaceNode& a, const SpaceNode& b) {
            return a.allocatedSizeBytes > b.allocatedSizeBytes;
        });
        for (const SpaceNode& child : children) {
            node.allocatedSizeBytes += child.allocatedSizeBytes;
            node.logicalSizeBytes += child.logicalSizeBytes;
            node.itemCount += child.itemCount;
        }
        node.itemCount = std::max<std::int64_t>(node.itemCount, 1);
        node.children = std::move(children);
        done(std::move(node), gathering.deliver);
    }

    void measure(SpaceNode node, std::vector<ListedEntry> entries, const Deliver& deliver)
    {
        auto measuring = std::make_shared<Measuring>();
        measuring->node = std::move(node);
        measuring->deliver = deliver;
        measuring->pending = entries.size() + 1;
        for (ListedEntry& entry : entries) {
            if (!entry.status.isDirectory()) {
                // Anything but a folder, a link included, is itself alone.
                measuring->allocated += entry.status.allocatedSize;
                measuring->logical += entry.status.size;
                ++measuring->files;
                measured(*measuring);
                continue;
            }
            m_pool.submit([this, path = std::move(entry.path), measuring] {
                if (!m_stop.stop_requested()) {
                    const UsageSink usage = measureFolder(m_fileManager, path, m_stop);
                    measuring->allocated += usage.allocatedBytes();
                    measuring->logical += usage.logicalBytes();
                    measuring->files += usage.fileCount();
                    if (m_progress)
                        m_progress(NativePath::decode(path.data(), static_cast<qsizetype>(path.size())));
                }
                measured(*measuring);
            });
        }
        measured(*measuring);
    }

    void measured(Measuring& measuring)
    {
        if (--measuring.pending > 0)
            return;
        SpaceNode& node = measuring.node;
        node.allocatedSizeBytes = measuring.allocated;
        node.logicalSizeBytes = measuring.logical;
        node.itemCount = std::max<std::int64_t>(measuring.files, 1);
        done(std::move(node), measuring.deliver);
    }

    const FileManager& m_fileManager;
    BoundedTaskPool& m_pool;
    std::stop_token m_stop;
    int m_maxDepth;
    const Progress& m_progress;
};

SpaceLensEngine::SpaceLensEngine(std::shared_ptr<const FileManager> fileManager, std::size_t threads)
    : m_fileManager(fileManager ? std::move(fileManager) : std::make_shared<FileManager>())
    , m_threads(threads)
{
}

SpaceNode SpaceLensEngine::scanDirectory(const QString& path, int maxDepth, std::stop_token stop,
                                         const Progress& progress) const
{
    return buildNode(path, 0, maxDepth, std::move(stop), progress);
}

SpaceNode SpaceLensEngine::buildNode(const QString& path, int currentDepth, int maxDepth, std::stop_token stop,
                                     const Progress& progress) const
{
    // The item the user named, a link followed; a name that leads nowhere fails the build.
    const std::optional<FileStatus> status = m_fileManager->status(path, true);
    if (!status)
        throw SpaceLensError(SpaceLensError::Case::noSuchFile, path);
    std::string native = NativePath::encode(path).toStdString();
    while (native.size() > 1 && native.ends_with('/'))
        native.pop_back();

    std::optional<SpaceNode> root;
    BoundedTaskPool pool(m_threads);
    Build build(*m_fileManager, pool, stop, maxDepth, progress);
    pool.run([&] {
        build.node(native, *status, currentDepth, [&root](std::optional<SpaceNode> node) { root = std::move(node); });
    });
    if (stop.stop_requested() || !root)
        throw CancellationError();
    return std::move(*root);
}

std::vector<SpaceNode> SpaceLensEngine::filter(const SpaceNode& root, std::optional<std::int64_t> minSize,
                                               std::optional<double> minAgeSeconds,
                                               std::optional<FileCategory> category)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::vector<SpaceNode> result;
    const std::function<void(const SpaceNode&)> visit = [&](const SpaceNode& node) {
        const bool sizePasses = !minSize || node.allocatedSizeBytes >= *minSize || node.logicalSizeBytes >= *minSize;
        // Without a date the age test fails, with or without a category asked for.
        bool agePasses = true;
        if (minAgeSeconds) {
            const std::optional<QDateTime>& date =
                node.lastAccessedDate ? node.lastAccessedDate : node.lastModifiedDate;
            agePasses = date && static_cast<double>(date->msecsTo(now)) / 1000.0 >= *minAgeSeconds;
        }
        const bool categoryPasses = !category || (node.fileCategory && *node.fileCategory == *category);
        const bool isLeaf = !node.isDirectory || !node.children;
        if (sizePasses && agePasses && categoryPasses && isLeaf)
            result.push_back(node);
        if (node.children) {
            for (const SpaceNode& child : *node.children)
                visit(child);
        }
    };
    visit(root);
    std::stable_sort(result.begin(), result.end(), [](const SpaceNode& a, const SpaceNode& b) {
        return a.allocatedSizeBytes > b.allocatedSizeBytes;
    });
    return result;
}

} // namespace kestrow
