#include "platform/SoftwareRoot.h"

#include "platform/FileManager.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"

namespace kestrow {

namespace {

const QStringList& defaultDataDirectories()
{
    static const QStringList folders{QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")};
    return folders;
}

const QStringList& defaultSearchPath()
{
    static const QStringList folders{
        QStringLiteral("/usr/local/bin"),  QStringLiteral("/usr/bin"),  QStringLiteral("/bin"),
        QStringLiteral("/usr/local/sbin"), QStringLiteral("/usr/sbin"), QStringLiteral("/sbin"),
        QStringLiteral("/usr/games"),      QStringLiteral("/snap/bin"), QStringLiteral("/var/lib/flatpak/exports/bin")};
    return folders;
}

QStringList below(const QString& root, const QStringList& folders)
{
    QStringList moved;
    for (const QString& folder : folders)
        moved.append(root + folder);
    return moved;
}

} // namespace

SoftwareRoot SoftwareRoot::system()
{
    const QString rpm = QStringLiteral("/usr/bin/rpm");
    return SoftwareRoot{
        .dataDirectories = ProcessFolders::dataDirectories(),
        .flatpakInstallation = QStringLiteral("/var/lib/flatpak"),
        .snapdState = QStringLiteral("/var/lib/snapd"),
        .snapMounts = QStringLiteral("/snap"),
        .dpkgInfo = QStringLiteral("/var/lib/dpkg/info"),
        .rpmProgram = FileManager().fileExists(rpm) ? rpm : QString(),
        .executableSearchPath = ProcessFolders::executableSearchPath(),
    };
}

SoftwareRoot SoftwareRoot::below(const QString& root)
{
    const QString base = PathText::standardizing(root);
    return SoftwareRoot{
        .dataDirectories = kestrow::below(base, defaultDataDirectories()),
        .flatpakInstallation = base + QStringLiteral("/var/lib/flatpak"),
        .snapdState = base + QStringLiteral("/var/lib/snapd"),
        .snapMounts = base + QStringLiteral("/snap"),
        .dpkgInfo = base + QStringLiteral("/var/lib/dpkg/info"),
        .rpmProgram = QString(),
        .executableSearchPath = kestrow::below(base, defaultSearchPath()),
    };
}

} // namespace kestrow
