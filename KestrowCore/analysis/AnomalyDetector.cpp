#include "analysis/AnomalyDetector.h"

#include "analysis/UsageSink.h"
#include "platform/PathText.h"
#include "rules/RuleRegistry.h"
#include "safety/CacheDirTagDetector.h"
#include "safety/SandboxValidator.h"
#include "support/KestrowError.h"

#include <QDateTime>

#include <algorithm>

namespace kestrow {

namespace {

// A file of more than this many counts as many files.
constexpr std::int64_t manyFiles = 500;

QString standardized(const QString& path)
{
    return PathText::standardizing(path);
}

qsizetype componentCount(const QString& path)
{
    return standardized(path).split(QLatin1Char('/'), Qt::SkipEmptyParts).size();
}

// `path` is `outer` or lies below it.
bool isWithin(const QString& path, const QString& outer)
{
    return path == outer || path.startsWith(outer + QLatin1Char('/'));
}

// The length of an MD5, a SHA-1 or a SHA-256 in hex, and nothing but hex digits.
bool isHashName(const QString& name)
{
    const QString extension = PathText::pathExtension(name);
    const QString stem = extension.isEmpty() ? name : name.left(name.size() - extension.size() - 1);
    if (stem.size() != 32 && stem.size() != 40 && stem.size() != 64)
        return false;
    return std::all_of(stem.begin(), stem.end(), [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('a') && c <= QLatin1Char('f')) ||
               (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
    });
}

// How sure a finding is, and what it suggests.
struct Verdict {
    double confidence;
    RiskTier tier;
    StorageCategory category;
};

std::optional<Verdict> decide(bool validTag, bool hasKeywords, bool hashNamed, bool many)
{
    if (validTag)
        return Verdict{1.0, RiskTier::safeToDelete, StorageCategory::developerCache};
    const StorageCategory unknown = StorageCategory::unknownAnomaly;
    if (!hasKeywords) {
        if (!hashNamed)
            return std::nullopt;
        return Verdict{many ? 0.65 : 0.55, RiskTier::reviewRequired, unknown};
    }
    if (hashNamed)
        return Verdict{many ? 0.95 : 0.8999999999999999, RiskTier::safeToDelete, unknown};
    return many ? Verdict{0.7499999999999999, RiskTier::safeToDelete, unknown}
                : Verdict{0.6499999999999999, RiskTier::reviewRequired, unknown};
}

} // namespace

AnomalyDetector::AnomalyDetector(AnomalyDetectorConfiguration config, std::shared_ptr<const RuleRegistry> ruleRegistry,
                                 std::shared_ptr<const FileManager> fileManager)
    : m_config(std::move(config))
    , m_ruleRegistry(std::move(ruleRegistry))
    , m_fileManager(fileManager ? std::move(fileManager) : std::make_shared<FileManager>())
{
}

const QStringList& AnomalyDetector::keywords()
{
    static const QStringList list{
        QStringLiteral("cache"),        QStringLiteral("caches"), QStringLiteral("tmp"),    QStringLiteral("temp"),
        QStringLiteral("artifacts"),    QStringLiteral("build"),  QStringLiteral("wheels"), QStringLiteral("download"),
        QStringLiteral("downloads"),    QStringLiteral("dist"),   QStringLiteral("target"), QStringLiteral("out"),
        QStringLiteral("intermediate"),
    };
    return list;
}

std::vector<StorageAnomaly> AnomalyDetector::detectAnomalies(std::stop_token stop) const
{
    std::vector<StorageAnomaly> found;
    QStringList claimed;
    for (const QString& root : m_config.inspectionRoots) {
        if (!m_fileManager->fileExists(root))
            continue;
        QStringList candidates = findCandidateDirectories(root, m_config.maxSearchDepth);
        // Parents before children, so that an outer folder found spares the walk below it.
        std::stable_sort(candidates.begin(), candidates.end(),
                         [](const QString& a, const QString& b) { return componentCount(a) < componentCount(b); });
        for (const QString& candidate : candidates) {
            if (stop.stop_requested())
                throw CancellationError();
            const QString path = standardized(candidate);
            if (std::any_of(claimed.begin(), claimed.end(),
                            [&](const QString& outer) { return isWithin(path, outer); }))
                continue;
            if (std::optional<StorageAnomaly> anomaly = analyzeCandidate(candidate, stop)) {
                found.push_back(std::move(*anomaly));
                claimed.append(path);
            }
        }
    }
    if (stop.stop_requested())
        throw CancellationError();

    // Only the outer one of nested findings stands, also across overlapping roots.
    std::stable_sort(found.begin(), found.end(), [](const StorageAnomaly& a, const StorageAnomaly& b) {
        return componentCount(a.path) < componentCount(b.path);
    });
    std::vector<StorageAnomaly> kept;
    for (StorageAnomaly& anomaly : found) {
        const QString path = standardized(anomaly.path);
        if (std::none_of(kept.begin(), kept.end(),
                         [&](const StorageAnomaly& outer) { return isWithin(path, standardized(outer.path)); }))
            kept.push_back(std::move(anomaly));
    }
    std::stable_sort(kept.begin(), kept.end(), [](const StorageAnomaly& a, const StorageAnomaly& b) {
        return a.allocatedSizeBytes > b.allocatedSizeBytes;
    });
    return kept;
}

QString AnomalyDetector::sanitizeSlug(const QString& name)
{
    QString slug;
    bool lastWasHyphen = false;
    for (const char32_t scalar : name.toLower().toUcs4()) {
        if (QChar::isLetterOrNumber(scalar) || scalar == U'.' || scalar == U'_') {
            slug.append(QString::fromUcs4(&scalar, 1));
            lastWasHyphen = false;
        } else if (!slug.isEmpty() && !lastWasHyphen) {
            slug.append(QLatin1Char('-'));
            lastWasHyphen = true;
        }
    }
    while (slug.endsWith(QLatin1Char('-')) || slug.endsWith(QLatin1Char('.')))
        slug.chop(1);
    return slug.isEmpty() ? QStringLiteral("untracked") : slug;
}

QStringList AnomalyDetector::findCandidateDirectories(const QString& root, int maxDepth) const
{
    // Folders only, never through a link; an unreadable folder holds none.
    const auto folders = [this](const QString& parent) {
        QStringList paths;
        for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(parent, true).entries) {
            if (entry.isDirectory && !entry.isSymbolicLink)
                paths.append(PathText::appending(parent, entry.name));
        }
        return paths;
    };
    QStringList candidates = folders(root);
    if (maxDepth != 1) {
        const QStringList firstLevel = candidates;
        for (const QString& folder : firstLevel)
            candidates.append(folders(folder));
    }
    return candidates;
}

std::optional<StorageAnomaly> AnomalyDetector::analyzeCandidate(const QString& path, std::stop_token stop) const
{
    // Asked first: the walk below is the expensive part.
    if (m_ruleRegistry && !m_ruleRegistry->matchingRules(path).empty())
        return std::nullopt;
    const DirectoryMetrics metrics = computeDirectoryMetrics(path, stop);
    if (metrics.allocatedBytes < m_config.minSizeBytes)
        return std::nullopt;
    const std::optional<CacheDirTagInfo> tag = CacheDirTagDetector::detectTag(path, *m_fileManager);
    const bool validTag = tag && tag->isValid;
    const QString folderName = PathText::lastComponent(path);
    const QString lowered = folderName.toLower();
    QStringList matched;
    for (const QString& keyword : keywords()) {
        if (lowered.contains(keyword))
            matched.append(keyword);
    }
    const bool hashNamed = checkHashFilePatterns(path);
    const std::optional<Verdict> verdict =
        decide(validTag, !matched.isEmpty(), hashNamed, metrics.fileCount > manyFiles);
    if (!verdict)
        return std::nullopt;
    std::optional<RuleDefinition> rule = synthesizeRule(path, verdict->tier, verdict->category, validTag);
    if (!rule)
        return std::nullopt;
    const std::optional<QString> comment = validTag ? tag->applicationComment : std::nullopt;
    const QString description =
        validTag ? QStringLiteral("Authoritative cache tagged with CACHEDIR.TAG standard (") +
                       comment.value_or(lowered) + QStringLiteral(").")
                 : QStringLiteral("Untracked heavy storage directory matching cache heuristics (keywords: ") +
                       matched.join(QStringLiteral(", ")) + QStringLiteral(").");
    return StorageAnomaly{
        .id = QUuid::createUuid(),
        .path = path,
        .allocatedSizeBytes = metrics.allocatedBytes,
        .logicalSizeBytes = metrics.logicalBytes,
        .fileCount = metrics.fileCount,
        .confidenceScore = verdict->confidence,
        .hasCacheDirTag = validTag,
        .tagApplicationComment = comment,
        .matchedKeywords = matched,
        .suggestedRiskTier = verdict->tier,
        .suggestedCategory = verdict->category,
        .anomalyDescription = description,
        .proposedRule = std::move(rule),
    };
}

AnomalyDetector::DirectoryMetrics AnomalyDetector::computeDirectoryMetrics(const QString& path,
                                                                           std::stop_token stop) const
{
    // Hidden files and the insides of bundles count; links are never followed.
    UsageSink sink;
    m_fileManager->walk(path, sink, std::move(stop), WalkOptions::allProcessors());
    return {sink.allocatedBytes(), sink.logicalBytes(), sink.fileCount()};
}

bool AnomalyDetector::checkHashFilePatterns(const QString& path) const
{
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(path, false);
    return std::any_of(listing.entries.begin(), listing.entries.end(),
                       [](const DirectoryEntry& entry) { return isHashName(entry.name); });
}

std::optional<RuleDefinition> AnomalyDetector::synthesizeRule(const QString& path, RiskTier riskTier,
                                                              StorageCategory category, bool isRegenerable) const
{
    const QString& home = m_config.homeURL;
    QString displayPath = path;
    if (!home.isEmpty() && displayPath.startsWith(home))
        displayPath.replace(home, QStringLiteral("~"));
    const QString pattern = displayPath + QStringLiteral("/**");
    try {
        SandboxValidator::validatePattern(pattern, std::nullopt, home, m_fileManager->systemCalls());
    } catch (const SandboxSecurityError&) {
        // A folder right in the home, or in protected ground, is never proposed.
        return std::nullopt;
    }
    const QString folderName = PathText::lastComponent(path);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    return RuleDefinition{
        .id = ruleIdPrefix + sanitizeSlug(folderName),
        .name = QStringLiteral("Untracked Cache (") + folderName + QStringLiteral(")"),
        .description =
            QStringLiteral("Synthesized cleanup rule for uncataloged directory at ") + pattern + QStringLiteral("."),
        .category = category,
        .riskTier = riskTier,
        .patterns = {pattern},
        .excludedPatterns = {},
        .isRegenerable = isRegenerable,
        .isBuiltIn = false,
        .enabled = true,
        .minAgeDays = std::nullopt,
        .synthesizedBy = QStringLiteral("anomaly_detector"),
        .createdAt = now,
        .updatedAt = now,
    };
}

} // namespace kestrow
