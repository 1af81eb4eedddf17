#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "system/StartupLocations.h"
#include "system/StartupSource.h"

#include <QVariantMap>

#include <memory>

namespace kestrow {

// launchd's jobs: the property lists of the user's agents, the machine's agents and its
// daemons. A job is turned off by renaming its file to end in ".disabled" and unloading it,
// and on again the other way round.
class LaunchdJobs final : public StartupSource {
public:
    LaunchdJobs(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager,
                std::shared_ptr<const CommandRunner> runner);

    [[nodiscard]] std::vector<StartupItem> listItems() const override;
    [[nodiscard]] bool owns(const StartupItem& item) const override;
    [[nodiscard]] QString toggle(const StartupItem& item, bool enable) const override;

private:
    void scanDirectory(const QString& folder, StartupType type, bool requiresAdmin,
                       std::vector<StartupItem>& items) const;
    [[nodiscard]] StartupItem parsePlist(const QString& path, const QVariantMap& plist, StartupType type,
                                         bool isDisabled, bool requiresAdmin) const;
    // Unless launchctl is missing; a failure to launch it and its status are not looked at.
    void tellLaunchctl(const QString& verb, const QString& path) const;
    void move(const QString& from, const QString& to) const;

    QString m_home;
    QString m_launchdRoot;
    QString m_launchctl;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const CommandRunner> m_runner;
};

} // namespace kestrow
