#pragma once

#include "platform/FileManager.h"
#include "scan/TargetScan.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class RuleRegistry;

// What the system scanner gives back: its items and the non-fatal warnings of its walks.
struct SystemTargetsOutcome {
    std::vector<DiscoveredItem> items;
    QStringList warnings;
};

// The scanner of the system categories: user caches, logs, crash reports, Mail downloads
// and browser caches. Unlike the developer scanner it notices folders it may not read.
class SystemTargets {
public:
    struct Options {
        QString homeURL;
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<RuleRegistry> ruleRegistry;
        std::optional<RiskClassifier> riskClassifier; // default: on the same home, registry and file manager
    };

    explicit SystemTargets(Options options);

    // Throws CancellationError.
    [[nodiscard]] SystemTargetsOutcome scan(const CategorySet& categories, const ScanProgressCallback& progress,
                                            std::stop_token stop = {}) const;

    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }

private:
    // Each sub-scan emits through `scan` and appends its warnings in the order they occur.
    void scanUserCaches(TargetScan& scan, QStringList& warnings) const;
    void scanUserLogs(TargetScan& scan, QStringList& warnings) const;
    void scanCrashReports(TargetScan& scan, QStringList& warnings) const;
    void scanMailDownloads(TargetScan& scan, QStringList& warnings) const;
    void scanBrowserCaches(TargetScan& scan, QStringList& warnings) const;

    // The entries of a location's top folder, hidden ones left out, whose description is its
    // label. A refusal is reported; a folder that is missing or can't be read lists nothing.
    [[nodiscard]] std::vector<DirectoryEntry> listTopFolder(TargetScan& scan, QStringList& warnings,
                                                            const TargetScan::Location& location) const;
    // Emits `location` as one item if it exists and can be listed; a refusal is reported
    // instead, under the location's description.
    void emitUnlessRefused(TargetScan& scan, QStringList& warnings, const TargetScan::Location& location) const;
    // A location that refused to be listed: the warning naming `label`, and a stand-in item
    // without sizes that says Full Disk Access is missing.
    static void reportRefusal(TargetScan& scan, QStringList& warnings, const QString& label,
                              const TargetScan::Location& location);

    // Paths beginning with "/" stand as they are; others hang on the home.
    [[nodiscard]] QString home(const QString& relative) const;

    QString m_homeURL;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<RuleRegistry> m_ruleRegistry;
    RiskClassifier m_riskClassifier;
    ItemMeasurer m_measurer;
};

} // namespace kestrow
