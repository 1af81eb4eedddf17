#include "cleanup/TrashLedger.h"

#include "cleanup/AnchoredItemMeasurer.h"
#include "cleanup/TrashPipeline.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "platform/TrashFolder.h"
#include "platform/TrashLocation.h"

#include <QHash>
#include <QSet>

namespace kestrow {

namespace {

// A record's date is local time to the second, taken while the run went on; the line's time
// stamp is taken when the run is over. The margins cover the rounding of both.
constexpr qint64 marginMs = 2000;

struct Window {
    QDateTime from;
    QDateTime to;
    [[nodiscard]] bool holds(const std::optional<QDateTime>& moment) const
    {
        return moment && from.isValid() && *moment >= from && *moment <= to;
    }
};

Window windowOf(const AuditLogEntry& line)
{
    const QDateTime end = QDateTime::fromString(line.timestamp, Qt::ISODateWithMs);
    if (!end.isValid())
        return {};
    const auto duration = static_cast<qint64>(line.durationMs.value_or(0));
    return {end.addMSecs(-duration - marginMs), end.addMSecs(marginMs)};
}

// The Trash folders open by path, each opened once.
class OpenFolders {
public:
    explicit OpenFolders(const FileManager& fileManager)
        : m_fileManager(fileManager)
    {
    }

    void add(const TrashLocation::Folder& location)
    {
        if (m_folders.contains(location.path))
            return;
        m_order.push_back(location);
        m_folders.emplace(location.path, TrashFolder::open(m_fileManager, location));
    }

    [[nodiscard]] const TrashFolder* find(const QByteArray& path) const
    {
        const auto found = m_folders.find(path);
        return found != m_folders.end() && found->second ? &*found->second : nullptr;
    }

    [[nodiscard]] const std::vector<TrashLocation::Folder>& order() const { return m_order; }

private:
    const FileManager& m_fileManager;
    std::vector<TrashLocation::Folder> m_order;
    std::map<QByteArray, std::optional<TrashFolder>> m_folders;
};

} // namespace

TrashLedger::TrashLedger(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_auditLogger(std::move(options.auditLogger))
{
}

TrashHoldings TrashLedger::read() const
{
    TrashHoldings holdings{.lines = m_auditLogger->readEntries(), .runs = {}};
    const SystemCalls& calls = m_fileManager->systemCalls();

    // Where the runs' items may have gone: the home Trash, and the Trash of each other file
    // system their folders lie on.
    OpenFolders folders(*m_fileManager);
    if (const QByteArray home = TrashLocation::homeTrashPath(); !home.isEmpty())
        folders.add({home, {}});
    QHash<QString, QStringList> pathsKnownAs; // a line's path and the same path resolved now
    QSet<QByteArray> parentsSeen;
    for (const AuditLogEntry& line : holdings.lines) {
        if (line.operationType != AuditOperationType::trash)
            continue;
        for (const QString& path : line.paths) {
            if (pathsKnownAs.contains(path))
                continue;
            const QString acted = TrashPipeline::pathActedOn(path, calls);
            pathsKnownAs.insert(path, acted == path ? QStringList{path} : QStringList{path, acted});
            const QByteArray parent = NativePath::encode(PathText::parent(acted));
            if (!parentsSeen.contains(parent)) {
                parentsSeen.insert(parent);
                for (const TrashLocation::Folder& folder : TrashLocation::foldersFor(calls, parent))
                    folders.add(folder);
            }
        }
    }

    std::vector<TrashEntry> entries;
    for (const TrashLocation::Folder& location : folders.order()) {
        if (const TrashFolder* folder = folders.find(location.path)) {
            std::vector<TrashEntry> found = folder->entries();
            entries.insert(entries.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
        }
    }
    QHash<QString, std::vector<std::size_t>> byOriginal;
    for (std::size_t i = 0; i < entries.size(); ++i)
        byOriginal[entries[i].originalPath].push_back(i);
    std::vector<bool> claimed(entries.size(), false);

    const auto measured = [&](const TrashEntry& entry, HardLinkTally* tally) {
        const TrashFolder* folder = folders.find(entry.folder.path);
        const AnchorOutcome anchored = folder ? folder->anchor(entry) : AnchorOutcome{};
        if (!anchored.item)
            return MeasuredMetrics{};
        AnchoredItemMeasure measure = AnchoredItemMeasurer::measure(*m_fileManager, *anchored.item);
        if (tally)
            tally->merge(measure.hardLinks);
        return measure.metrics;
    };

    for (const AuditLogEntry& line : holdings.lines) {
        if (line.operationType != AuditOperationType::trash)
            continue;
        TrashedRun run{.line = line, .items = {}, .pathsGone = {}};
        const Window window = windowOf(line);
        HardLinkTally tally;
        for (const QString& path : line.paths) {
            std::optional<std::size_t> chosen;
            for (const QString& known : pathsKnownAs.value(path)) {
                for (const std::size_t i : byOriginal.value(known)) {
                    if (claimed[i] || !window.holds(entries[i].deletedAt))
                        continue;
                    if (!chosen || *entries[i].deletedAt < *entries[*chosen].deletedAt)
                        chosen = i;
                }
            }
            if (!chosen) {
                run.pathsGone.append(path);
                continue;
            }
            claimed[*chosen] = true;
            TrashedItem item{entries[*chosen], measured(entries[*chosen], &tally)};
            run.allocatedBytes += item.metrics.allocatedBytes;
            run.items.push_back(std::move(item));
        }
        run.bytesHeldElsewhere = tally.bytesHeldElsewhere();
        holdings.runs.push_back(std::move(run));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (claimed[i])
            continue;
        ++holdings.foreignCount;
        holdings.foreignBytes += measured(entries[i], nullptr).allocatedBytes;
    }
    return holdings;
}

} // namespace kestrow
