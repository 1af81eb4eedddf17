#pragma once

#include "policy/RiskClassifier.h"
#include "scan/ItemMeasurer.h"
#include "storage/DiscoveredItem.h"
#include "storage/ScanProgress.h"

#include <QStringList>

#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// One call of a target scanner: the shape every known location shares. A location is
// measured, a location with content is classified and emitted as an item, and a progress
// report for that item follows. Non-fatal warnings are kept in the order they occur.
class TargetScan {
public:
    TargetScan(const ItemMeasurer& measurer, const RiskClassifier& riskClassifier, const ScanProgressCallback& progress,
               std::stop_token stop);
    // A scan whose items come already tiered (the rule stage's): it only measures and emits
    // with `emitUnclassified`; `emit` and `emitIfContent` need a classifier.
    TargetScan(const ItemMeasurer& measurer, const ScanProgressCallback& progress, std::stop_token stop);

    struct Location {
        QString path;
        StorageCategory category;
        QString description;
        std::optional<QString> defaultRuleId;
        bool isOrphaned = false;
        bool isLocked = false;

        [[nodiscard]] static Location at(const QString& path, StorageCategory category, const QString& description,
                                         const char* defaultRuleId)
        {
            return {.path = path,
                    .category = category,
                    .description = description,
                    .defaultRuleId = QLatin1String(defaultRuleId)};
        }
    };

    [[nodiscard]] MeasuredMetrics measure(const QString& path) const { return m_measurer.measureItem(path, m_stop); }
    // Emits the location with metrics already taken.
    void emit(const Location& location, const MeasuredMetrics& metrics);
    // Measures and emits the location if it has content; returns whether it did.
    bool emitIfContent(const Location& location);
    // Emits an item the caller built and tiered itself (a stand-in for a location that could
    // not be read, or a rule's match), with its progress report.
    void emitUnclassified(DiscoveredItem item);

    void warn(const QString& warning) { m_warnings.append(warning); }

    // Throws CancellationError once the scan has been asked to stop.
    void checkCancellation() const;

    [[nodiscard]] const std::vector<DiscoveredItem>& items() const { return m_items; }
    [[nodiscard]] std::vector<DiscoveredItem> takeItems() { return std::move(m_items); }
    [[nodiscard]] QStringList takeWarnings() { return std::move(m_warnings); }

private:
    const ItemMeasurer& m_measurer;
    const RiskClassifier* m_riskClassifier; // absent for a scan of already tiered items
    const ScanProgressCallback& m_progress;
    std::stop_token m_stop;
    std::vector<DiscoveredItem> m_items;
    QStringList m_warnings;
};

} // namespace kestrow
