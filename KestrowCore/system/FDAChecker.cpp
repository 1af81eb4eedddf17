#include "system/FDAChecker.h"

#include "platform/PathText.h"

namespace kestrow {

FDAChecker::FDAChecker(QString homeURL, HostSystem system, std::shared_ptr<const FileManager> fileManager,
                       std::shared_ptr<const CommandRunner> runner)
    : m_homeURL(std::move(homeURL))
    , m_system(system)
    , m_fileManager(std::move(fileManager))
    , m_runner(std::move(runner))
{
}

bool FDAChecker::hasFullDiskAccess() const
{
    if (m_system != HostSystem::macOS)
        return true;
    const QString probes[] = {QStringLiteral("Library/Safari"),
                              QStringLiteral("Library/Application Support/MobileSync"), QStringLiteral("Library/Mail")};
    for (const QString& probe : probes) {
        const QString folder = PathText::appending(m_homeURL, probe);
        if (m_fileManager->fileExists(folder))
            return m_fileManager->contentsOfDirectory(folder, false).ok();
    }
    return true;
}

QString FDAChecker::settingsURL()
{
    return QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
}

void FDAChecker::openSystemSettings() const
{
    if (m_system == HostSystem::macOS)
        m_runner->startDetached({QStringLiteral("/usr/bin/open"), {settingsURL()}});
}

} // namespace kestrow
