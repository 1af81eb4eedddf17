#pragma once

#include "platform/HostSystem.h"
#include "scan/TargetScan.h"
#include "scan/targets/TargetContext.h"
#include "scan/targets/TargetScanner.h"
#include "storage/ScanTarget.h"
#include "storage/StorageCategory.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kestrow {

// Every family of known locations, in the order a scan visits them: which stage runs it,
// what it finds, the switch that turns it off, and the rule ids whose work it does. The
// engine, the target stages, the rule stage and the target filter all read it; a new family
// is a new row.
class ScanTargetTable {
public:
    // The developer stage measures quietly; the system stage notices folders it may not read.
    enum class Stage { developer, system };

    struct Row {
        Stage stage;
        StorageCategory category;
        std::shared_ptr<const TargetScanner> scanner;
        // The rule ids of the built-in rules whose locations the scanner covers itself.
        QStringList ruleIds;
        // The switch that turns the family off, and what the filter matches for it: locations
        // below the home (given for families without a switch too: they claim their cache
        // folders) and rule id beginnings.
        std::optional<ScanTarget> target = std::nullopt;
        QStringList homeRelativePaths = {};
        QStringList ruleIdPrefixes = {};
        // The only system whose tools keep their data where the family looks; none: any.
        std::optional<HostSystem> host = std::nullopt;
    };

    [[nodiscard]] static const std::vector<Row>& rows();

    // The categories a stage can find.
    [[nodiscard]] static CategorySet categories(Stage stage);
    // Runs the stage's rows of the requested categories in order, checking for cancellation
    // before each. Throws CancellationError.
    static void scan(Stage stage, const CategorySet& categories, TargetScan& scan, const TargetContext& context);

    // The names in the XDG cache folder whose contents a family other than the user caches
    // reports: the first folder below ".cache" of the families' locations.
    [[nodiscard]] static const QStringList& claimedCacheNames();

    // The built-in rules whose locations the scanners cover; the rule stage skips them.
    [[nodiscard]] static const QStringList& ruleIdsScannedByTargets();

    // A target owns a category when all the families of that category are its own, so that
    // switching it off leaves nothing of the category to scan.
    [[nodiscard]] static std::vector<StorageCategory> ownedCategories(ScanTarget target);
    [[nodiscard]] static QStringList homeRelativePaths(ScanTarget target);
    [[nodiscard]] static QStringList ruleIdPrefixes(ScanTarget target);
};

} // namespace kestrow
