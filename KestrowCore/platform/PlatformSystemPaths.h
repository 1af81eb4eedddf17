#pragma once

#include <QStringList>

namespace kestrow {

// Ground that the sandbox's fixed lists do not name on this platform. The fixed lists are
// written for macOS, where "/Users" holds the homes; elsewhere the homes and the system trees
// stand under other names, and these close them the same way.
class PlatformSystemPaths {
public:
    // Folders that hold users' homes: only the home being worked on is open below them.
    [[nodiscard]] static const QStringList& userHomeRoots();
    // Mounted media and installed software ("/mnt", "/opt"...): closed like the system trees,
    // except for the home being worked on should it live there.
    [[nodiscard]] static const QStringList& sharedRoots();
    // System trees that nothing below may be removed from.
    [[nodiscard]] static const QStringList& systemPrefixes();
};

} // namespace kestrow
