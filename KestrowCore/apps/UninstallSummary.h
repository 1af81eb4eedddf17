#pragma once

#include "cleanup/TrashItemRecord.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <vector>

namespace kestrow {

// What one uninstall removed, or in a dry run would remove.
struct UninstallSummary {
    QUuid id;
    QString appName;
    QString bundleIdentifier;
    QString bundlePath;       // the bundle's URL in JSON
    QStringList deletedPaths; // `deletedURLs` in JSON: items that went or would go, in record order
    std::int64_t freedAllocatedBytes = 0;
    std::int64_t freedLogicalBytes = 0;
    bool dryRun = false;
    std::vector<TrashItemRecord> records;
    QDateTime timestamp;

    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;

    friend bool operator==(const UninstallSummary&, const UninstallSummary&) = default;
};

} // namespace kestrow
