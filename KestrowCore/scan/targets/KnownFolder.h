#pragma once

#include "scan/TargetScan.h"

#include <QLatin1String>

#include <initializer_list>

namespace kestrow {

// A folder a tool keeps below its root, with the description its item carries.
struct KnownFolder {
    QLatin1String relative;
    QLatin1String description;

    // Each folder below `root` with content becomes a developer cache item. A path holding
    // `neverTarget` is left alone whatever else holds: tool binaries and the user's own
    // settings are no cache.
    static void emitEach(TargetScan& scan, const QString& root, std::initializer_list<KnownFolder> folders,
                         const QString& ruleId, QLatin1String neverTarget);
};

} // namespace kestrow
