#pragma once

#include "platform/FileManager.h"
#include "scan/ThermalGovernor.h"
#include "storage/MeasuredMetrics.h"

#include <QString>

#include <functional>
#include <memory>
#include <stop_token>

namespace kestrow {

// Measures locations with the one walker: hard links counted once by device and inode,
// links never entered, hidden files counted, allocated size from the block count.
// Never fails: what cannot be seen measures as less, or as nothing. A folder is walked on as
// many threads as the governor's profile allows (as the machine has processors without one),
// and every thread of it stops while the governor pauses the scan.
class ItemMeasurer {
public:
    // Decides whether an unreadable folder below a location means that Full Disk Access is
    // missing; absent, unreadable folders leave no trace.
    using PermissionErrorTest = std::function<bool(int errorCode)>;

    explicit ItemMeasurer(const FileManager& fileManager, PermissionErrorTest isPermissionError = {},
                          std::shared_ptr<ThermalGovernor> thermalGovernor = {});

    // Nothing there (a link leading nowhere included) measures as nothing; a folder as all it
    // holds, at least one file; anything else, a link to a folder included, as itself alone.
    [[nodiscard]] MeasuredMetrics measureItem(const QString& path, std::stop_token stop = {}) const;
    // The same, walked as the thread `worker` of `crew`, whose other threads may help.
    [[nodiscard]] MeasuredMetrics measureItem(const QString& path, WalkCrew& crew, std::size_t worker) const;
    // Threads that may walk at once now.
    [[nodiscard]] std::size_t threads() const;
    // Its own lstat: a link's length and blocks, never its target's.
    [[nodiscard]] MeasuredMetrics measureSingleFile(const QString& path) const;

private:
    [[nodiscard]] WalkOptions walkOptions(const std::stop_token& stop) const;
    [[nodiscard]] MeasuredMetrics measureItem(const QString& path, std::stop_token stop,
                                              const WalkOptions& options) const;

    const FileManager& m_fileManager;
    PermissionErrorTest m_isPermissionError;
    std::shared_ptr<ThermalGovernor> m_thermalGovernor;
};

} // namespace kestrow
