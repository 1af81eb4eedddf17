#include "system/LaunchdJobs.h"

#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "platform/PropertyListReader.h"
#include "platform/SystemMessage.h"
#include "system/StartupError.h"

#include <cerrno>
#include <fcntl.h>

namespace kestrow {

namespace {

const QLatin1String plistSuffix(".plist");
const QLatin1String disabledSuffix(".disabled");
const QLatin1String disabledPlistSuffix(".plist.disabled");

} // namespace

LaunchdJobs::LaunchdJobs(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager,
                         std::shared_ptr<const CommandRunner> runner)
    : m_home(locations.home)
    , m_launchdRoot(locations.launchdRoot)
    , m_launchctl(locations.launchctl)
    , m_fileManager(std::move(fileManager))
    , m_runner(std::move(runner))
{
}

std::vector<StartupItem> LaunchdJobs::listItems() const
{
    std::vector<StartupItem> items;
    scanDirectory(PathText::appending(m_home, QStringLiteral("Library/LaunchAgents")), StartupType::userLaunchAgent,
                  false, items);
    scanDirectory(PathText::appending(m_launchdRoot, QStringLiteral("Library/LaunchAgents")),
                  StartupType::systemLaunchAgent, true, items);
    scanDirectory(PathText::appending(m_launchdRoot, QStringLiteral("Library/LaunchDaemons")),
                  StartupType::systemLaunchDaemon, true, items);
    return items;
}

bool LaunchdJobs::owns(const StartupItem& item) const
{
    return item.fileURL && (item.fileURL->endsWith(plistSuffix) || item.fileURL->endsWith(disabledPlistSuffix));
}

void LaunchdJobs::scanDirectory(const QString& folder, StartupType type, bool requiresAdmin,
                                std::vector<StartupItem>& items) const
{
    const DirectoryListing listing = m_fileManager->contentsOfDirectory(folder, false);
    for (const DirectoryEntry& entry : listing.entries) {
        const bool isDisabled = entry.name.endsWith(disabledPlistSuffix);
        if (!isDisabled && !entry.name.endsWith(plistSuffix))
            continue;
        const QString path = PathText::appending(folder, entry.name);
        if (const std::optional<QVariantMap> plist = PropertyListReader::readDictionary(*m_fileManager, path))
            items.push_back(parsePlist(path, *plist, type, isDisabled, requiresAdmin));
    }
}

StartupItem LaunchdJobs::parsePlist(const QString& path, const QVariantMap& plist, StartupType type, bool isDisabled,
                                    bool requiresAdmin) const
{
    const QVariant labelValue = plist.value(QStringLiteral("Label"));
    QString label = labelValue.typeId() == QMetaType::QString ? labelValue.toString() : QString();
    if (labelValue.typeId() != QMetaType::QString) {
        label = PathText::lastComponent(path);
        label.truncate(label.lastIndexOf(QLatin1Char('.')));
    }
    const QVariant runAtLoadValue = plist.value(QStringLiteral("RunAtLoad"));
    const bool runAtLoad = runAtLoadValue.typeId() == QMetaType::Bool && runAtLoadValue.toBool();
    const bool hasKeepAlive = plist.contains(QStringLiteral("KeepAlive"));

    std::optional<QString> executable;
    const QVariant program = plist.value(QStringLiteral("Program"));
    const QVariant arguments = plist.value(QStringLiteral("ProgramArguments"));
    if (program.typeId() == QMetaType::QString) {
        executable = program.toString();
    } else if (arguments.typeId() == QMetaType::QVariantList && !arguments.toList().isEmpty() &&
               arguments.toList().first().typeId() == QMetaType::QString) {
        executable = arguments.toList().first().toString();
    }

    StartupStatus status = isDisabled ? StartupStatus::disabled : StartupStatus::enabled;
    if (executable && !m_fileManager->fileExists(*executable))
        status = StartupStatus::orphan;
    const StartupImpact impact =
        hasKeepAlive ? StartupImpact::high : (runAtLoad ? StartupImpact::medium : StartupImpact::low);
    const QStringList parts = label.split(QLatin1Char('.'), Qt::SkipEmptyParts);

    return StartupItem{
        .id = QUuid::createUuid(),
        .name = parts.isEmpty() ? label : parts.last(),
        .label = label,
        .type = type,
        .fileURL = path,
        .targetExecutablePath = executable,
        .isEnabled = !isDisabled,
        .isRunning = false,
        .requiresAdministrator = requiresAdmin,
        .status = status,
        .impact = impact,
        .bundleIdentifier = label,
    };
}

QString LaunchdJobs::toggle(const StartupItem& item, bool enable) const
{
    if (!item.fileURL || !m_fileManager->fileExists(*item.fileURL))
        throw StartupError::fileOperationFailed(item.fileURL.value_or(item.label), SystemMessage::of(ENOENT));
    const QString& path = *item.fileURL;
    const bool isDisabled = path.endsWith(disabledSuffix);
    if (!enable) {
        if (isDisabled)
            return path;
        const QString disabledPath = path + disabledSuffix;
        // Unloaded while the file still has its plain name, as launchd knows it by that.
        tellLaunchctl(QStringLiteral("unload"), path);
        move(path, disabledPath);
        return disabledPath;
    }
    if (!isDisabled)
        return path;
    const QString enabledPath = path.chopped(disabledSuffix.size());
    move(path, enabledPath);
    tellLaunchctl(QStringLiteral("load"), enabledPath);
    return enabledPath;
}

void LaunchdJobs::tellLaunchctl(const QString& verb, const QString& path) const
{
    if (!m_fileManager->fileExists(m_launchctl))
        return;
    try {
        static_cast<void>(m_runner->run({m_launchctl, {verb, QStringLiteral("-w"), path}}));
    } catch (const ProcessLaunchError&) {
        // launchd picks the file up at the next login either way.
    }
}

void LaunchdJobs::move(const QString& from, const QString& to) const
{
    if (m_fileManager->systemCalls().renameAt(AT_FDCWD, NativePath::encode(from).constData(), AT_FDCWD,
                                              NativePath::encode(to).constData(), true) != 0)
        throw StartupError::fileOperationFailed(from, SystemMessage::of(errno));
}

} // namespace kestrow
