#pragma once

#include "storage/ScanResult.h"
#include "storage/ScanTarget.h"
#include "storage/StorageCategory.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <set>

namespace kestrow {

// The user's two choices about what a scan may touch: scan targets switched off and paths
// excluded. It tells the scan which categories to ask for and narrows a finished result. A
// plain value; `isExcluded` and everything built on it read the disk to resolve links.
class ScanTargetFilter {
public:
    // Keeps the exclusions that `normalize` accepts, in their order.
    ScanTargetFilter(std::set<ScanTarget> disabledTargets = {}, const QStringList& excludedPaths = {},
                     QString homeURL = {});

    // Trimmed, "~" expanded against `homeURL`, standardised; nothing for empty or relative text.
    [[nodiscard]] static std::optional<QString> normalize(const QString& path, const QString& homeURL);

    [[nodiscard]] const std::set<ScanTarget>& disabledTargets() const { return m_disabledTargets; }
    [[nodiscard]] const QStringList& excludedPaths() const { return m_excludedPaths; }
    [[nodiscard]] const QString& homeURL() const { return m_homeURL; }

    [[nodiscard]] bool isPassThrough() const;
    // All categories less those the disabled targets own; nothing (meaning all) when they own none.
    [[nodiscard]] std::optional<CategorySet> categoriesToScan() const;
    // The disabled target the item belongs to, by category, rule id or location.
    [[nodiscard]] std::optional<ScanTarget> disabledTarget(const DiscoveredItem& item) const;
    // True when the path lies in an exclusion or holds one, as written or with links resolved.
    [[nodiscard]] bool isExcluded(const QString& path) const;
    [[nodiscard]] bool allows(const DiscoveredItem& item) const;
    // The result without what the filter rules out, its summary recomputed; the same value
    // when nothing is removed.
    [[nodiscard]] ScanResult apply(const ScanResult& result) const;

    friend bool operator==(const ScanTargetFilter&, const ScanTargetFilter&) = default;

private:
    std::set<ScanTarget> m_disabledTargets;
    QStringList m_excludedPaths;
    QString m_homeURL;
};

} // namespace kestrow
