#include "system/StartupLocations.h"

#include "platform/HostSystem.h"
#include "platform/ProcessFolders.h"

namespace kestrow {

StartupLocations StartupLocations::standard(const QString& home)
{
    StartupLocations locations{
        .home = home,
        .launchdRoot = QStringLiteral("/"),
        .configDirectories = {},
        .userUnitDirectories = {},
        .systemUnitDirectories = {},
        .executableSearchPath = ProcessFolders::executableSearchPath(),
        .launchctl = QStringLiteral("/bin/launchctl"),
        .systemctl = {},
    };
    if (currentHostSystem() == HostSystem::gnuLinux) {
        locations.configDirectories = ProcessFolders::configDirectories();
        locations.userUnitDirectories = {QStringLiteral("/etc/systemd/user"), QStringLiteral("/usr/lib/systemd/user")};
        locations.systemUnitDirectories = {QStringLiteral("/etc/systemd/system"),
                                           QStringLiteral("/usr/lib/systemd/system"),
                                           QStringLiteral("/lib/systemd/system")};
        locations.systemctl = QStringLiteral("/usr/bin/systemctl");
    }
    return locations;
}

} // namespace kestrow
