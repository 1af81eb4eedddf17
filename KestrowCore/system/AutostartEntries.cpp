#include "system/AutostartEntries.h"

#include "platform/AtomicFileWriter.h"
#include "platform/PathText.h"
#include "platform/SystemMessage.h"
#include "platform/XdgBaseFolders.h"
#include "system/StartupError.h"

#include <cerrno>
#include <set>

namespace kestrow {

namespace {

const QString desktopEntry = QStringLiteral("Desktop Entry");
const QString hiddenKey = QStringLiteral("Hidden");
const QString gnomeEnabledKey = QStringLiteral("X-GNOME-Autostart-enabled");
const QLatin1String desktopSuffix(".desktop");

} // namespace

AutostartEntries::AutostartEntries(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager)
    : m_userFolder(PathText::appending(XdgBaseFolders::forHome(locations.home).configHome, QStringLiteral("autostart")))
    , m_fileManager(std::move(fileManager))
    , m_programs(*m_fileManager, locations.executableSearchPath)
{
    for (const QString& folder : locations.configDirectories)
        m_systemFolders.append(PathText::appending(folder, QStringLiteral("autostart")));
}

std::vector<StartupItem> AutostartEntries::listItems() const
{
    const std::vector<Entry> userEntries = entriesIn(m_userFolder);
    // Of the same name in two system folders, the one of the folder named first counts.
    std::vector<Entry> systemEntries;
    std::set<QString> systemNames;
    for (const QString& folder : m_systemFolders)
        for (Entry& entry : entriesIn(folder))
            if (systemNames.insert(PathText::lastComponent(entry.path)).second)
                systemEntries.push_back(std::move(entry));

    const auto userEntryNamed = [&](const QString& name) -> const Entry* {
        for (const Entry& entry : userEntries)
            if (PathText::lastComponent(entry.path) == name)
                return &entry;
        return nullptr;
    };
    std::vector<StartupItem> items;
    for (const Entry& entry : userEntries)
        if (!hidesOnly(entry.file) || !systemNames.contains(PathText::lastComponent(entry.path)))
            items.push_back(item(entry, StartupType::userLaunchAgent, false));
    for (const Entry& entry : systemEntries) {
        const Entry* userEntry = userEntryNamed(PathText::lastComponent(entry.path));
        if (!userEntry)
            items.push_back(item(entry, StartupType::systemLaunchAgent, false));
        else if (hidesOnly(userEntry->file))
            items.push_back(item(entry, StartupType::systemLaunchAgent, true));
    }
    return items;
}

bool AutostartEntries::owns(const StartupItem& item) const
{
    return item.fileURL && item.fileURL->endsWith(desktopSuffix);
}

std::vector<AutostartEntries::Entry> AutostartEntries::entriesIn(const QString& folder) const
{
    std::vector<Entry> entries;
    for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(folder, true).entries) {
        if (!entry.name.endsWith(desktopSuffix) || entry.isDirectory)
            continue;
        const QString path = PathText::appending(folder, entry.name);
        std::optional<DesktopEntryFile> file = DesktopEntryFile::read(*m_fileManager, path);
        if (file && file->hasGroup(desktopEntry))
            entries.push_back({path, std::move(*file)});
    }
    return entries;
}

StartupItem AutostartEntries::item(const Entry& entry, StartupType type, bool hiddenByUser) const
{
    const DesktopEntryFile& file = entry.file;
    const QString label = PathText::lastComponent(entry.path).chopped(desktopSuffix.size());
    const QString name = file.string(desktopEntry, QStringLiteral("Name")).value_or(QString());

    std::optional<QString> executable;
    if (const std::optional<QString> exec = file.string(desktopEntry, QStringLiteral("Exec")))
        if (const std::optional<QStringList> arguments = DesktopEntryFile::execArguments(*exec);
            arguments && !arguments->isEmpty())
            executable = arguments->first();

    const bool disabled = hiddenByUser || isDisabled(file);
    StartupStatus status = disabled ? StartupStatus::disabled : StartupStatus::enabled;
    if (executable && !m_programs.exists(*executable))
        status = StartupStatus::orphan;
    // Entries run at every login; one that the session restarts when it ends weighs more.
    const bool restarts = file.boolean(desktopEntry, QStringLiteral("X-GNOME-AutoRestart")) == true;

    return StartupItem{
        .id = QUuid::createUuid(),
        .name = name.isEmpty() ? label : name,
        .label = label,
        .type = type,
        .fileURL = entry.path,
        .targetExecutablePath = executable,
        .isEnabled = !disabled,
        .isRunning = false,
        .requiresAdministrator = type == StartupType::systemLaunchAgent,
        .status = status,
        .impact = restarts ? StartupImpact::high : StartupImpact::medium,
        .bundleIdentifier = label,
    };
}

bool AutostartEntries::hidesOnly(const DesktopEntryFile& file)
{
    return file.boolean(desktopEntry, hiddenKey) == true && !file.rawValue(desktopEntry, QStringLiteral("Exec"));
}

bool AutostartEntries::isDisabled(const DesktopEntryFile& file)
{
    return file.boolean(desktopEntry, hiddenKey) == true || file.boolean(desktopEntry, gnomeEnabledKey) == false;
}

QByteArray AutostartEntries::enabledBytes(const DesktopEntryFile& file)
{
    QByteArray bytes = file.bytes();
    if (file.boolean(desktopEntry, hiddenKey) == true)
        bytes = file.withoutKey(desktopEntry, hiddenKey);
    if (file.boolean(desktopEntry, gnomeEnabledKey) == false)
        if (const std::optional<DesktopEntryFile> edited = DesktopEntryFile::parse(bytes))
            bytes = edited->withValue(desktopEntry, gnomeEnabledKey, QStringLiteral("true"));
    return bytes;
}

QString AutostartEntries::toggle(const StartupItem& item, bool enable) const
{
    if (!item.fileURL || !m_fileManager->fileExists(*item.fileURL))
        throw StartupError::fileOperationFailed(item.fileURL.value_or(item.label), SystemMessage::of(ENOENT));
    const QString& path = *item.fileURL;
    if (PathText::parent(path) == m_userFolder)
        return toggleUserFile(path, enable);

    const QString userPath = PathText::appending(m_userFolder, PathText::lastComponent(path));
    bool removedHidingFile = false;
    if (m_fileManager->status(userPath)) {
        const DesktopEntryFile userFile = readToChange(userPath);
        if (!hidesOnly(userFile))
            return toggleUserFile(userPath, enable);
        if (!enable)
            return path;
        if (const FileOperationResult removed = m_fileManager->removeItem(userPath); !removed.succeeded)
            throw StartupError::fileOperationFailed(userPath, removed.errorDescription);
        removedHidingFile = true;
    }
    const DesktopEntryFile systemFile = readToChange(path);
    if (isDisabled(systemFile) != enable)
        return removedHidingFile ? userPath : path;
    // A system entry that disables itself is turned on by a user copy that does not.
    write(userPath, enable ? enabledBytes(systemFile) : QByteArrayLiteral("[Desktop Entry]\nHidden=true\n"));
    return userPath;
}

QString AutostartEntries::toggleUserFile(const QString& path, bool enable) const
{
    const DesktopEntryFile file = readToChange(path);
    if (isDisabled(file) != enable)
        return path;
    write(path, enable ? enabledBytes(file) : file.withValue(desktopEntry, hiddenKey, QStringLiteral("true")));
    return path;
}

DesktopEntryFile AutostartEntries::readToChange(const QString& path) const
{
    const FileManager::RegularFileRead read =
        m_fileManager->readRegularFile(path, DesktopEntryFile::maxFileBytes, true);
    if (read.errorCode != 0)
        throw StartupError::fileOperationFailed(path, read.errorDescription);
    std::optional<DesktopEntryFile> file = DesktopEntryFile::parse(read.bytes);
    if (!file)
        throw StartupError::fileOperationFailed(path, QStringLiteral("not a desktop entry file (it is not UTF-8)"));
    return std::move(*file);
}

void AutostartEntries::write(const QString& path, const QByteArray& bytes) const
{
    const FileOperationResult written = AtomicFileWriter(m_fileManager->systemCalls()).write(path, bytes, true);
    if (!written.succeeded)
        throw StartupError::fileOperationFailed(path, written.errorDescription);
}

} // namespace kestrow
