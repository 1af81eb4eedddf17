#pragma once

#include <QString>
#include <QStringList>

namespace kestrow {

// Where the startup manager looks and what it runs. The user's own folders lie below `home`;
// every system folder is named here, so that a test can point each at a temporary one.
struct StartupLocations {
    QString home;
    // Holds "Library/LaunchAgents" and "Library/LaunchDaemons" for the whole machine.
    QString launchdRoot;
    // The system configuration folders ($XDG_CONFIG_DIRS), each with an "autostart" folder,
    // in order of precedence.
    QStringList configDirectories;
    // Folders of user units outside the home, and of system units, in order of precedence.
    QStringList userUnitDirectories;
    QStringList systemUnitDirectories;
    // Where a program named without a folder is looked for.
    QStringList executableSearchPath;
    // Run only where they exist.
    QString launchctl;
    QString systemctl;

    // This machine's places for `home`; on macOS only launchd's.
    [[nodiscard]] static StartupLocations standard(const QString& home);
};

} // namespace kestrow
