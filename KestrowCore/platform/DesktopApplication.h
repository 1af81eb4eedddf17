#pragma once

#include <QString>

#include <optional>

namespace kestrow {

// How a Linux application came onto the machine.
enum class DesktopApplicationOrigin {
    user,     // an entry of the user's own data folder, for a program of the user's
    system,   // an entry of a system data folder: the package manager's
    flatpak,  // exported by a Flatpak installation
    snap,     // exported by snapd
    appImage, // an AppImage file, with or without an integration entry
};

// One application as its desktop entry or its AppImage describes it.
struct DesktopApplication {
    QString desktopId; // the entry's id without ".desktop"; for a bare AppImage, a name from its file
    DesktopApplicationOrigin origin = DesktopApplicationOrigin::system;
    std::optional<QString> entryPath; // absent for an AppImage without an integration entry
    QString name;                     // Name, in the user's language where the entry has it
    // The program Exec starts, past "env" and the Flatpak and Snap launchers, as written.
    std::optional<QString> program;
    std::optional<QString> tryExec;
    std::optional<QString> icon;
    std::optional<QString> startupWMClass;
    std::optional<QString> flatpakId;
    std::optional<QString> flatpakDeployment; // "<installation>/app/<id>"
    bool flatpakUserInstallation = false;
    std::optional<QString> snapName;
    std::optional<QString> appImagePath;
    std::optional<QString> version; // X-AppImage-Version, or the Flatpak's latest release
    bool hidden = false;            // Hidden=true: deleted for this user
    bool noDisplay = false;         // NoDisplay=true: installed, never shown

    friend bool operator==(const DesktopApplication&, const DesktopApplication&) = default;
};

} // namespace kestrow
