#pragma once

#include "platform/SystemCalls.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrow {

// Folders of the home that this platform keeps what cannot be had again in, beyond those the
// sandbox names everywhere ("Documents", ".ssh"...). None on macOS.
class PlatformHomeFolders {
public:
    enum class Kind {
        personal, // the user's own files
        secrets,  // keyrings, passwords, certificates
        profile,  // a browser's or mail program's profiles
        trash,    // the Trash: emptying it is an act of its own
    };
    struct Folder {
        QString relativePath; // below the home
        Kind kind;
    };

    // The folders that stand at fixed places below the home.
    [[nodiscard]] static const std::vector<Folder>& fixedFolders();
    // The user's personal folders as the desktop's user-dirs.dirs names them, in any language
    // and wherever they lie: documents, desktop, pictures, music, videos, templates and public
    // share. Both $XDG_CONFIG_HOME/user-dirs.dirs and the home's own .config/user-dirs.dirs are
    // read, since the home worked on need not be the process's. Folders switched off (set to
    // the home) are left out, and so is anything holding the home. Files that are missing or
    // unreadable give nothing; they are read through `systemCalls`.
    [[nodiscard]] static QStringList personalFolders(const QString& homePath, const SystemCalls& systemCalls);
};

} // namespace kestrow
