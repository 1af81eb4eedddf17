#pragma once

#include "scan/TargetScan.h"
#include "scan/targets/TargetContext.h"

#include <vector>

namespace kestrow {

// Locations that privacy protection may refuse to list. A refusal neither fails nor stays
// silent: it becomes a warning and a stand-in item without sizes.
class ProtectedFolder {
public:
    [[nodiscard]] static bool isRefusal(const DirectoryListing& listing);

    // The entries of a location's top folder, hidden ones left out, whose description is its
    // label. A refusal is reported; a folder that is missing or can't be read lists nothing.
    [[nodiscard]] static std::vector<DirectoryEntry> listTopFolder(TargetScan& scan, const TargetContext& context,
                                                                   const TargetScan::Location& location);
    // Emits `location` as one item if it exists and can be listed; a refusal is reported
    // instead, under the location's description.
    static void emitUnlessRefused(TargetScan& scan, const TargetContext& context, const TargetScan::Location& location);
    // A location that refused to be listed: the warning naming `label`, and a stand-in item
    // that says Full Disk Access is missing.
    static void reportRefusal(TargetScan& scan, const QString& label, const TargetScan::Location& location);
};

} // namespace kestrow
