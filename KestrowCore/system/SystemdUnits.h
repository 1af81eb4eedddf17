#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "platform/UnitFile.h"
#include "system/ProgramLocator.h"
#include "system/StartupLocations.h"
#include "system/StartupSource.h"

#include <memory>

namespace kestrow {

// systemd's units: the user's units that are enabled or disabled (static and generated ones
// start only as something else's part), and the machine's enabled services. systemctl says
// which units there are and in what state; their files say what they run. A user unit is
// turned off and on by systemctl; a system service only by an administrator.
class SystemdUnits final : public StartupSource {
public:
    SystemdUnits(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager,
                 std::shared_ptr<const CommandRunner> runner);

    [[nodiscard]] std::vector<StartupItem> listItems() const override;
    [[nodiscard]] bool owns(const StartupItem& item) const override;
    [[nodiscard]] QString toggle(const StartupItem& item, bool enable) const override;

private:
    struct ListedUnit {
        QString name;
        bool isEnabled = false;
    };
    // The units systemctl lists with `arguments`; none when it cannot say.
    [[nodiscard]] std::vector<ListedUnit> listUnitFiles(const QStringList& arguments) const;
    // The first file of the unit (or of its template) in `folders`.
    [[nodiscard]] std::optional<QString> unitFile(const QString& unit, const QStringList& folders) const;
    [[nodiscard]] StartupItem item(const ListedUnit& unit, const QString& path, StartupType type,
                                   const QStringList& startTargets) const;

    QStringList m_ownFolders;  // the user's own unit folders, in the XDG configuration and data folders
    QStringList m_userFolders; // every folder of user units, in search order
    QStringList m_systemFolders;
    QString m_systemctl;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const CommandRunner> m_runner;
    ProgramLocator m_programs;
};

} // namespace kestrow
