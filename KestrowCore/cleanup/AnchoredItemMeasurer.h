#pragma once

#include "cleanup/HardLinkTally.h"
#include "platform/FileManager.h"
#include "storage/MeasuredMetrics.h"

#include <QStringList>

namespace kestrow {

// What acting on an anchored item would move or delete.
struct AnchoredItemMeasure {
    MeasuredMetrics metrics;
    QStringList mountPoints; // below the item, in path order: it must not move or go with them
    HardLinkTally hardLinks;
};

// Measures an anchored item through its descriptor: allocated and logical bytes and regular
// files, links not followed, neither below it nor the item itself (a link measures as the
// link, which is what would move). Unlike a scan's measure, a file linked twice in a folder
// counts twice. An empty folder counts 1 file, an unreadable one 1 file and no bytes.
class AnchoredItemMeasurer {
public:
    [[nodiscard]] static AnchoredItemMeasure measure(const FileManager& fileManager, const AnchoredItem& item);
};

} // namespace kestrow
