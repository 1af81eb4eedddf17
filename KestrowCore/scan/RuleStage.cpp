#include "scan/RuleStage.h"

#include "platform/PathText.h"
#include "rules/RuleRegistry.h"
#include "safety/GlobMatcher.h"
#include "scan/ScanTargetTable.h"
#include "scan/TargetScan.h"

#include <QSet>
#include <QUuid>

#include <algorithm>

namespace kestrow {

namespace {

bool isWild(QStringView segment)
{
    return segment.contains(QLatin1Char('*')) || segment.contains(QLatin1Char('?'));
}

} // namespace

RuleStage::RuleStage(Options options)
    : m_homeURL(std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_thermalGovernor(options.thermalGovernor ? std::move(options.thermalGovernor) : ThermalGovernor::makeDefault())
    , m_measurer(*m_fileManager, {}, m_thermalGovernor)
{
}

void RuleStage::checkpoint(const std::stop_token& stop) const
{
    if (stop.stop_requested())
        throw CancellationError();
    m_thermalGovernor->checkpoint(stop);
}

std::vector<DiscoveredItem> RuleStage::scanRegistryRules(const RuleRegistry& registry, const CategorySet& categories,
                                                         const ScanProgressCallback& progress,
                                                         std::stop_token stop) const
{
    // Items here keep their rule's tier: no classifier takes part.
    TargetScan scan(m_measurer, progress, stop);
    for (const RuleDefinition& rule : registry.activeRules()) {
        checkpoint(stop);
        if (!categories.contains(rule.category))
            continue;
        // A user's rule that reuses a scanner's id is not the scanner's business.
        if (rule.isBuiltIn && ScanTargetTable::ruleIdsScannedByTargets().contains(rule.id))
            continue;
        for (const QString& pattern : rule.patterns) {
            checkpoint(stop);
            const QStringList paths = resolveMatchingPaths(pattern, stop);
            // A resolution cut short by a stop must not pass for a complete one.
            scan.checkCancellation();
            for (const QString& path : paths) {
                checkpoint(stop);
                if (isExcluded(rule, path))
                    continue;
                scan.emitMeasured(path, [rule, path](const MeasuredMetrics& metrics) -> std::optional<DiscoveredItem> {
                    if (!metrics.hasContent())
                        return std::nullopt; // vanished since it was resolved
                    return DiscoveredItem{
                        .id = QUuid::createUuid(),
                        .path = path,
                        .category = rule.category,
                        .riskTier = rule.riskTier,
                        .logicalSizeBytes = metrics.logicalBytes,
                        .allocatedSizeBytes = metrics.allocatedBytes,
                        .fileCount = metrics.fileCount,
                        .lastAccessedDate = metrics.lastAccessedDate,
                        .lastModifiedDate = metrics.lastModifiedDate,
                        .isOrphaned = false,
                        .isLocked = false,
                        .requiresFullDiskAccess = metrics.requiresFullDiskAccess,
                        .itemDescription = rule.name,
                        .ruleId = rule.id,
                    };
                });
            }
        }
    }
    return scan.takeItems();
}

bool RuleStage::isExcluded(const RuleDefinition& rule, const QString& path) const
{
    return std::any_of(rule.excludedPatterns.begin(), rule.excludedPatterns.end(),
                       [&](const QString& pattern) { return GlobMatcher::matches(pattern, path, m_homeURL); });
}

QStringList RuleStage::resolveMatchingPaths(const QString& pattern, const std::stop_token& stop) const
{
    QString expanded = GlobMatcher::expandHome(pattern, m_homeURL);
    if (expanded.endsWith(QLatin1String("/**")))
        expanded.chop(3);
    if (!isWild(expanded))
        return m_fileManager->fileExists(expanded) ? QStringList{expanded} : QStringList{};

    const QStringList segments = expanded.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const auto firstWild = std::find_if(segments.begin(), segments.end(), isWild);
    const qsizetype wildIndex = firstWild - segments.begin();
    const QString base = QLatin1Char('/') + segments.first(wildIndex).join(QLatin1Char('/'));
    if (!m_fileManager->fileExists(base))
        return {};

    QStringList unique;
    QSet<QString> seen;
    for (const QString& path : resolveSegments(base, segments, wildIndex, stop)) {
        const QString key = PathText::standardizing(path);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        unique.append(path);
    }
    return unique;
}

QStringList RuleStage::resolveSegments(const QString& from, const QStringList& segments, qsizetype index,
                                       const std::stop_token& stop) const
{
    if (index == segments.size())
        return {from};
    const QString& head = segments[index];
    const qsizetype rest = index + 1;

    if (head == QLatin1String("**")) {
        // "**" may stand for no folder at all, then for each folder below.
        QStringList result = resolveSegments(from, segments, rest, stop);
        forEachDirectoryBelow(
            from, [&](const QString& directory) { result.append(resolveSegments(directory, segments, rest, stop)); },
            stop);
        return result;
    }

    if (isWild(head)) {
        const DirectoryListing listing = m_fileManager->contentsOfDirectory(from, true);
        if (!listing.ok())
            return {};
        QStringList result;
        for (const DirectoryEntry& entry : listing.entries) {
            if (entry.isSymbolicLink || !GlobMatcher::matchWildcard(head, entry.name))
                continue;
            const QString child = PathText::appending(from, entry.name);
            if (rest == segments.size())
                result.append(child);
            else if (entry.isDirectory)
                result.append(resolveSegments(child, segments, rest, stop));
        }
        return result;
    }

    const QString next = PathText::appending(from, head);
    if (!m_fileManager->fileExists(next))
        return {};
    return resolveSegments(next, segments, rest, stop);
}

void RuleStage::forEachDirectoryBelow(const QString& root, const std::function<void(const QString&)>& visit,
                                      const std::stop_token& stop) const
{
    // A folder that cannot be listed, or only in part, gives what could be seen.
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(root, true);
    for (const DirectoryEntry& entry : listing.entries) {
        if (stop.stop_requested())
            return;
        if (!entry.isDirectory || entry.isSymbolicLink)
            continue;
        const QString directory = PathText::appending(root, entry.name);
        visit(directory);
        forEachDirectoryBelow(directory, visit, stop);
    }
}

} // namespace kestrow
