#pragma once

#include <QString>

#include <optional>

namespace kestrow {

// Names in the Library that are never an orphan, whatever is installed: Apple's own, the
// system's components, developer tools and infrastructure that several applications share.
class Whitelist {
public:
    [[nodiscard]] static bool isProtected(const QString& name, const std::optional<QString>& bundleId);
    // The Linux desktop's own folders and files in the XDG folders: GNOME's, KDE's, XFCE's and
    // the session's services, shared settings and stores, by exact name or by family prefix.
    [[nodiscard]] static bool isLinuxDesktopComponent(const QString& name);
};

} // namespace kestrow
