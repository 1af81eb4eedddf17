#pragma once

#include <string_view>

namespace kestrow {

// Whether a folder is a bundle, an application or a library that the desktop shows as one
// item: on macOS what the system calls a package; on Linux, which has no such notion, a folder
// whose name ends in ".app", ".framework", ".bundle", ".plugin", ".kext", ".xcarchive" or
// ".photoslibrary", in any case. Stateless.
class BundleFolders {
public:
    // `path` is the folder's native path; unknown (unreadable, not a folder) counts as no bundle.
    [[nodiscard]] static bool isBundle(std::string_view path);
};

} // namespace kestrow
