#pragma once

#include <QString>

namespace kestrow {

// Where a home's tools keep their caches, settings and data, after the XDG Base Directory
// specification: "~/.cache", "~/.config", "~/.local/share" and "~/.local/state" unless the
// environment moves them.
struct XdgBaseFolders {
    QString cacheHome;
    QString configHome;
    QString dataHome;
    QString stateHome;

    // The folders of `home`. XDG_CACHE_HOME, XDG_CONFIG_HOME, XDG_DATA_HOME and XDG_STATE_HOME
    // count only when `home` is the process's own home (HOME) and they are absolute: the
    // environment speaks for the user who runs the program, not for another home worked on.
    [[nodiscard]] static XdgBaseFolders forHome(const QString& home);
    // The defaults below `home`, whatever the environment says.
    [[nodiscard]] static XdgBaseFolders below(const QString& home);
};

} // namespace kestrow
