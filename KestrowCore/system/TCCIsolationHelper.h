#pragma once

#include <QString>

#include <system_error>

namespace kestrow {

// Tells a refusal by the system's privacy or permission checks from an ordinary failure, so
// that a scan can report a blocked location instead of silently showing nothing.
class TCCIsolationHelper {
public:
    // True for EPERM and EACCES, whatever category carries them (errno values, the
    // std::filesystem errors); false for everything else, such as ENOENT.
    [[nodiscard]] static bool isPermissionOrTCCError(const std::error_code& error);
    // The same for a bare errno value, as FileManager listings and walks report it.
    [[nodiscard]] static bool isPermissionOrTCCError(int errorCode);

    // The warning a scan shows for a location it was refused.
    [[nodiscard]] static QString fdaWarning(const QString& targetName, const QString& path);
};

} // namespace kestrow
