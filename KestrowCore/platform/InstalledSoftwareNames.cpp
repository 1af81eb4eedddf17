#include "platform/InstalledSoftwareNames.h"

#include "platform/PathText.h"
#include "platform/XdgBaseFolders.h"

namespace kestrow {

InstalledSoftwareNames::InstalledSoftwareNames(std::shared_ptr<const FileManager> fileManager, SoftwareRoot root,
                                               QString home, std::shared_ptr<const CommandRunner> commandRunner)
    : m_fileManager(std::move(fileManager))
    , m_root(std::move(root))
    , m_home(std::move(home))
    , m_commandRunner(std::move(commandRunner))
{
}

QSet<QString> InstalledSoftwareNames::all() const
{
    return packages() + flatpakIds() + snapNames() + programs();
}

QSet<QString> InstalledSoftwareNames::entryNames(const QString& folder, bool folders) const
{
    QSet<QString> names;
    for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(folder, true).entries)
        if (entry.isDirectory == folders)
            names.insert(entry.name);
    return names;
}

QSet<QString> InstalledSoftwareNames::packages() const
{
    QSet<QString> names;
    // "libc6:amd64.list": the package, without its architecture.
    for (const QString& file : entryNames(m_root.dpkgInfo, false))
        if (file.endsWith(QLatin1String(".list")))
            names.insert(file.chopped(5).section(QLatin1Char(':'), 0, 0));
    if (!m_root.rpmProgram.isEmpty()) {
        try {
            const CommandResult result = m_commandRunner->runWithStatus(
                {m_root.rpmProgram, {QStringLiteral("-qa"), QStringLiteral("--qf"), QStringLiteral("%{NAME}\\n")}});
            if (result.exitStatus == 0)
                for (const QString& line : QString::fromUtf8(result.standardOutput).split(QLatin1Char('\n')))
                    if (!line.trimmed().isEmpty())
                        names.insert(line.trimmed());
        } catch (const ProcessLaunchError&) {
            // No rpm to ask after all: dpkg's names stand alone.
        }
    }
    return names;
}

QSet<QString> InstalledSoftwareNames::flatpakIds() const
{
    return entryNames(PathText::appending(m_root.flatpakInstallation, QStringLiteral("app")), true) +
           entryNames(PathText::appending(XdgBaseFolders::forHome(m_home).dataHome, QStringLiteral("flatpak/app")),
                      true);
}

QSet<QString> InstalledSoftwareNames::snapNames() const
{
    QSet<QString> names;
    // "firefox_2987.snap" is revision 2987 of "firefox"; the mounts name each Snap too.
    for (const QString& file : entryNames(PathText::appending(m_root.snapdState, QStringLiteral("snaps")), false))
        if (file.endsWith(QLatin1String(".snap")))
            names.insert(file.section(QLatin1Char('_'), 0, 0));
    for (const QString& folder : entryNames(m_root.snapMounts, true))
        if (folder != QLatin1String("bin"))
            names.insert(folder);
    return names;
}

QSet<QString> InstalledSoftwareNames::programs() const
{
    QSet<QString> names;
    for (const QString& folder : m_root.executableSearchPath)
        for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(folder, true).entries)
            if (!entry.isDirectory)
                names.insert(entry.name);
    return names;
}

} // namespace kestrow
