#pragma once

#include "analysis/AnomalyDetectorConfiguration.h"
#include "analysis/StorageAnomaly.h"
#include "platform/FileManager.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// Looks in the usual cache and project places for heavy folders that no rule claims and that
// look like caches, and proposes a rule for each. It only reads: the registry is asked, never
// changed, and nothing is deleted.
class AnomalyDetector {
public:
    AnomalyDetector(AnomalyDetectorConfiguration config, std::shared_ptr<const RuleRegistry> ruleRegistry,
                    std::shared_ptr<const FileManager> fileManager = {});

    // Outer folders only (a folder found claims all below it), largest first. Throws
    // CancellationError when `stop` is requested; unreadable folders are passed over.
    [[nodiscard]] std::vector<StorageAnomaly> detectAnomalies(std::stop_token stop = {}) const;

    // What the id of every proposed rule begins with.
    static constexpr QLatin1String ruleIdPrefix{"dynamic.anomaly."};
    // The words of a folder's name that make it look like a cache, in this order.
    [[nodiscard]] static const QStringList& keywords();
    // The rule id suffix for a folder name: lower case, letters, digits, dots and underscores
    // kept, every other run of characters one hyphen, never leading; trailing hyphens and dots
    // dropped; "untracked" when nothing is left.
    [[nodiscard]] static QString sanitizeSlug(const QString& name);

private:
    struct DirectoryMetrics {
        std::int64_t allocatedBytes = 0;
        std::int64_t logicalBytes = 0;
        std::int64_t fileCount = 0;
    };

    [[nodiscard]] QStringList findCandidateDirectories(const QString& root, int maxDepth) const;
    [[nodiscard]] std::optional<StorageAnomaly> analyzeCandidate(const QString& path, std::stop_token stop) const;
    [[nodiscard]] DirectoryMetrics computeDirectoryMetrics(const QString& path, std::stop_token stop) const;
    [[nodiscard]] bool checkHashFilePatterns(const QString& path) const;
    [[nodiscard]] std::optional<RuleDefinition> synthesizeRule(const QString& path, RiskTier riskTier,
                                                               StorageCategory category, bool isRegenerable) const;

    AnomalyDetectorConfiguration m_config;
    std::shared_ptr<const RuleRegistry> m_ruleRegistry;
    std::shared_ptr<const FileManager> m_fileManager;
};

} // namespace kestrow
