#pragma once

namespace kestrow {

// What an uninstall removes and how.
struct UninstallOptions {
    bool force = false;              // stop a running application; go on despite a footprint's block
    bool includeBundle = true;       // the ".app" itself
    bool includeDependencies = true; // the footprint's other items
    bool permanentPurge = false;     // delete instead of moving to the Trash (a real run only)
};

} // namespace kestrow
