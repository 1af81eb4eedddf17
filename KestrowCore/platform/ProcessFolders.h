#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kestrow {

// The process's own places, with the bytes of their names kept (see NativePath).
class ProcessFolders {
public:
    // The user's home: HOME as it is set, else "/" (as the platform's home lookup has it).
    [[nodiscard]] static QString home();
    // The working folder, or nothing when it cannot be read (it was removed, or a folder
    // above it refuses).
    [[nodiscard]] static std::optional<QString> workingFolder();
    // The folders PATH names, in order; the system's default search path when it is not set.
    [[nodiscard]] static QStringList executableSearchPath();
    // The system configuration folders of XDG_CONFIG_DIRS, in order of precedence; "/etc/xdg"
    // when it is not set.
    [[nodiscard]] static QStringList configDirectories();
    // The system data folders of XDG_DATA_DIRS, in order of precedence; "/usr/local/share" and
    // "/usr/share" when it is not set.
    [[nodiscard]] static QStringList dataDirectories();
};

} // namespace kestrow
