#pragma once

#include "platform/FileManager.h"
#include "storage/MeasuredMetrics.h"

#include <QString>

#include <functional>
#include <stop_token>

namespace kestrow {

// Measures locations with the one walker: hard links counted once by device and inode,
// links never entered, hidden files counted, allocated size from the block count.
// Never fails: what cannot be seen measures as less, or as nothing.
class ItemMeasurer {
public:
    // Decides whether an unreadable folder below a location means that Full Disk Access is
    // missing; absent, unreadable folders leave no trace.
    using PermissionErrorTest = std::function<bool(int errorCode)>;

    explicit ItemMeasurer(const FileManager& fileManager, PermissionErrorTest isPermissionError = {});

    // Nothing there (a link leading nowhere included) measures as nothing; a folder as all it
    // holds, at least one file; anything else, a link to a folder included, as itself alone.
    [[nodiscard]] MeasuredMetrics measureItem(const QString& path, std::stop_token stop = {}) const;
    // Its own lstat: a link's length and blocks, never its target's.
    [[nodiscard]] MeasuredMetrics measureSingleFile(const QString& path) const;

private:
    const FileManager& m_fileManager;
    PermissionErrorTest m_isPermissionError;
};

} // namespace kestrow
