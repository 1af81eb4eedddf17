#pragma once

#include "platform/FileManager.h"

#include <QString>

#include <cstdint>

namespace kestrow {

// What an installed application's bundle, file or folder holds on disk: its regular files,
// each inode once. A bundle reached through a link is measured where it lies.
struct BundleStorage {
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;

    [[nodiscard]] static BundleStorage measure(const FileManager& fileManager, const QString& bundlePath);
};

} // namespace kestrow
