#pragma once

#include "platform/DesktopApplication.h"
#include "platform/FileManager.h"
#include "platform/SoftwareRoot.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kestrow {

class DesktopEntryFile;

// Reads the applications of a Linux home and system: the desktop entries of the user's data
// folder, the Flatpak exports, the system data folders and snapd's, one per desktop file id
// with the earlier folder winning (so the user's entry overrides the system's), and the
// AppImages of the home's usual program folders. Reads only; unreadable entries are passed over.
class DesktopApplications {
public:
    // The folders an AppImage is looked for in, below the home.
    [[nodiscard]] static const QStringList& appImageFolders();

    // `userFolders`, when given, hold the user's entries and AppImages instead of the home's
    // data folder and its AppImage folders.
    DesktopApplications(std::shared_ptr<const FileManager> fileManager, SoftwareRoot root, QString home,
                        QStringList userFolders = {}, QString locale = localeFromEnvironment());

    // Every entry of type Application, hidden and undisplayed ones included, by id.
    [[nodiscard]] std::vector<DesktopApplication> entries() const;
    // What the user has as applications: the entries that are neither hidden nor undisplayed
    // (with `includeSystem`, those of the system data folders too) and the AppImages, each
    // AppImage merged with the user's entry that starts it.
    [[nodiscard]] std::vector<DesktopApplication> applications(bool includeSystem) const;
    // The icon file an entry's Icon names: an absolute path as it stands, else the first match
    // in the icon themes' and pixmaps folders of the home, the Flatpak exports and the system.
    [[nodiscard]] std::optional<QString> iconPath(const QString& icon) const;
    // The program a name stands for: a path as it stands, a bare name in the search path.
    [[nodiscard]] std::optional<QString> programPath(const QString& program) const;

    // The user's language for localised names: LC_ALL, else LC_MESSAGES, else LANG.
    [[nodiscard]] static QString localeFromEnvironment();

private:
    struct Folder {
        QString path;
        DesktopApplicationOrigin origin;
        bool flatpakUser = false;
    };

    [[nodiscard]] std::vector<Folder> entryFolders() const;
    [[nodiscard]] std::optional<DesktopApplication> readEntry(const QString& path, const QString& desktopId,
                                                              const Folder& folder) const;
    void describeLauncher(const DesktopEntryFile& entry, DesktopApplication& application) const;
    [[nodiscard]] std::optional<QString> flatpakVersion(const QString& deployment, const QString& id) const;
    [[nodiscard]] std::vector<DesktopApplication> appImages(const std::vector<DesktopApplication>& entries) const;
    [[nodiscard]] QStringList iconRoots() const;

    std::shared_ptr<const FileManager> m_fileManager;
    SoftwareRoot m_root;
    QString m_home;
    QString m_dataHome;
    QStringList m_userFolders;
    QString m_locale;
};

} // namespace kestrow
