#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "platform/SoftwareRoot.h"

#include <QSet>
#include <QString>

#include <memory>

namespace kestrow {

// The names of everything installed on a Linux system, for telling what no installed program
// can own: the packages of dpkg (and of rpm where there is one), the Flatpak applications of
// the system's and the user's installations, the Snaps, and the programs on the search path.
class InstalledSoftwareNames {
public:
    InstalledSoftwareNames(std::shared_ptr<const FileManager> fileManager, SoftwareRoot root, QString home,
                           std::shared_ptr<const CommandRunner> commandRunner = std::make_shared<CommandRunner>());

    // All of the names below; a source that cannot be read gives none.
    [[nodiscard]] QSet<QString> all() const;
    [[nodiscard]] QSet<QString> packages() const;
    [[nodiscard]] QSet<QString> flatpakIds() const;
    [[nodiscard]] QSet<QString> snapNames() const;
    [[nodiscard]] QSet<QString> programs() const;

private:
    [[nodiscard]] QSet<QString> entryNames(const QString& folder, bool folders) const;

    std::shared_ptr<const FileManager> m_fileManager;
    SoftwareRoot m_root;
    QString m_home;
    std::shared_ptr<const CommandRunner> m_commandRunner;
};

} // namespace kestrow
