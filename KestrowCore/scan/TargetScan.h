#pragma once

#include "policy/RiskClassifier.h"
#include "scan/ItemMeasurer.h"
#include "scan/MeasuringBatch.h"
#include "storage/DiscoveredItem.h"
#include "storage/ScanProgress.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// One call of a target scanner: the shape every known location shares. A location is
// measured, a location with content is classified and emitted as an item, and a progress
// report for that item follows. Locations are measured side by side, while the scanner goes on
// to the next: items come out in the order they were asked for, each as soon as it and all
// before it are measured, and all of them by `takeItems`. Non-fatal warnings are kept in the
// order they occur.
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

    // Measures at once, other locations' walks going on meanwhile.
    [[nodiscard]] MeasuredMetrics measure(const QString& path);
    // Emits the location with metrics already taken.
    void emit(const Location& location, const MeasuredMetrics& metrics);
    // Measures the location and emits it if it has content.
    void emitIfContent(const Location& location);
    // Measures `path` and emits the item that `make` builds of its metrics, if any: an item
    // the caller tiered itself (a rule's match).
    using ItemMaker = std::function<std::optional<DiscoveredItem>(const MeasuredMetrics&)>;
    void emitMeasured(const QString& path, ItemMaker make);
    // Emits an item the caller built and tiered itself (a stand-in for a location that could
    // not be read), with its progress report.
    void emitUnclassified(DiscoveredItem item);

    void warn(const QString& warning) { m_warnings.append(warning); }

    // Throws CancellationError once the scan has been asked to stop.
    void checkCancellation() const;

    // Every item, once all are measured; throws CancellationError when the scan was stopped
    // meanwhile, since what it measured then is cut short.
    [[nodiscard]] std::vector<DiscoveredItem> takeItems();
    [[nodiscard]] QStringList takeWarnings() { return std::move(m_warnings); }

private:
    // An item to come, in its place in the order.
    struct Emission {
        std::optional<std::size_t> measurement; // while it is being measured
        ItemMaker make;
        std::optional<DiscoveredItem> item;
    };

    [[nodiscard]] DiscoveredItem classified(const Location& location, const MeasuredMetrics& metrics) const;
    // Emits what is ready at the front of the order; with `wait`, all of it.
    void settle(bool wait);
    void report(DiscoveredItem item);

    const RiskClassifier* m_riskClassifier; // absent for a scan of already tiered items
    const ScanProgressCallback& m_progress;
    std::stop_token m_stop;
    std::vector<DiscoveredItem> m_items;
    std::deque<Emission> m_emissions;
    QStringList m_warnings;
    MeasuringBatch m_batch; // last, so that its walks end before what they report to goes
};

} // namespace kestrow
