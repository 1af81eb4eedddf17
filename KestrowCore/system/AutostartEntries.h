#pragma once

#include "platform/DesktopEntryFile.h"
#include "platform/FileManager.h"
#include "system/ProgramLocator.h"
#include "system/StartupLocations.h"
#include "system/StartupSource.h"

#include <memory>

namespace kestrow {

// The desktop's autostart entries: the user's in "~/.config/autostart", the machine's in the
// "autostart" folder of each system configuration folder. A user file hides a system file of
// the same name. Entries are turned off and on without root, in the files of the home only:
// a user entry by its "Hidden" key, a system entry by a same-named user file that hides it.
class AutostartEntries final : public StartupSource {
public:
    AutostartEntries(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager);

    [[nodiscard]] std::vector<StartupItem> listItems() const override;
    [[nodiscard]] bool owns(const StartupItem& item) const override;
    [[nodiscard]] QString toggle(const StartupItem& item, bool enable) const override;

private:
    struct Entry {
        QString path;
        DesktopEntryFile file;
    };

    [[nodiscard]] std::vector<Entry> entriesIn(const QString& folder) const;
    [[nodiscard]] StartupItem item(const Entry& entry, StartupType type, bool hiddenByUser) const;
    // A user file that only hides the system entry of its name: hidden, with nothing to run.
    [[nodiscard]] static bool hidesOnly(const DesktopEntryFile& file);
    [[nodiscard]] static bool isDisabled(const DesktopEntryFile& file);
    // The file's bytes with what disables it taken out.
    [[nodiscard]] static QByteArray enabledBytes(const DesktopEntryFile& file);

    [[nodiscard]] DesktopEntryFile readToChange(const QString& path) const;
    QString toggleUserFile(const QString& path, bool enable) const;
    void write(const QString& path, const QByteArray& bytes) const;

    QString m_userFolder;
    QStringList m_systemFolders;
    std::shared_ptr<const FileManager> m_fileManager;
    ProgramLocator m_programs;
};

} // namespace kestrow
