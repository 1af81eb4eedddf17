#pragma once

#include <QString>
#include <QStringList>

namespace kestrow {

// Where a Linux system keeps what is installed on it: the data folders whose "applications"
// hold desktop entries, the system Flatpak installation, snapd's state and the Snap mounts,
// the package database folders, and the folders of the program search path. Services take one
// at construction, so that they can be pointed at a fake root instead of the machine's.
struct SoftwareRoot {
    QStringList dataDirectories; // in order of precedence
    QString flatpakInstallation; // the system installation: "app/<id>" and "exports/share"
    QString snapdState;          // "desktop/applications" and "snaps/<name>_<rev>.snap"
    QString snapMounts;          // "<name>" for each Snap
    QString dpkgInfo;            // "<package>[:<arch>].list" for each Debian package
    QString rpmProgram;          // empty where there is no rpm to ask
    QStringList executableSearchPath;

    // The machine's own: XDG_DATA_DIRS, PATH, and the fixed system places.
    [[nodiscard]] static SoftwareRoot system();
    // The same places below `root`, with the usual default data folders and search path; rpm is
    // never asked.
    [[nodiscard]] static SoftwareRoot below(const QString& root);
};

} // namespace kestrow
