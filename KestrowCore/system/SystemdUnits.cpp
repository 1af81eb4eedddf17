#include "system/SystemdUnits.h"

#include "platform/PathText.h"
#include "platform/SystemMessage.h"
#include "platform/XdgBaseFolders.h"
#include "system/StartupError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>

namespace kestrow {

namespace {

const QString service = QStringLiteral("Service");

// The kinds of unit whose files systemctl lists.
const QStringList unitSuffixes{
    QStringLiteral(".service"), QStringLiteral(".socket"), QStringLiteral(".timer"),     QStringLiteral(".path"),
    QStringLiteral(".target"),  QStringLiteral(".mount"),  QStringLiteral(".automount"), QStringLiteral(".swap"),
    QStringLiteral(".slice"),   QStringLiteral(".scope"),
};

QString withoutSuffix(const QString& unit)
{
    return unit.left(unit.lastIndexOf(QLatin1Char('.')));
}

} // namespace

SystemdUnits::SystemdUnits(const StartupLocations& locations, std::shared_ptr<const FileManager> fileManager,
                           std::shared_ptr<const CommandRunner> runner)
    : m_ownFolders{PathText::appending(XdgBaseFolders::forHome(locations.home).configHome,
                                       QStringLiteral("systemd/user")),
                   PathText::appending(XdgBaseFolders::forHome(locations.home).dataHome,
                                       QStringLiteral("systemd/user"))}
    , m_systemFolders(locations.systemUnitDirectories)
    , m_systemctl(locations.systemctl)
    , m_fileManager(std::move(fileManager))
    , m_runner(std::move(runner))
    , m_programs(*m_fileManager, locations.executableSearchPath)
{
    // In the order of systemd's search path: the user's configuration, the machine's, the
    // units the user installed, then the packages'.
    m_userFolders.append(m_ownFolders.first());
    m_userFolders.append(locations.userUnitDirectories.mid(0, 1));
    m_userFolders.append(m_ownFolders.last());
    m_userFolders.append(locations.userUnitDirectories.mid(1));
}

std::vector<StartupItem> SystemdUnits::listItems() const
{
    std::vector<StartupItem> items;
    if (m_systemctl.isEmpty() || !m_fileManager->fileExists(m_systemctl))
        return items;
    for (const ListedUnit& unit :
         listUnitFiles({QStringLiteral("--user"), QStringLiteral("list-unit-files"), QStringLiteral("--output=json")}))
        if (const std::optional<QString> path = unitFile(unit.name, m_userFolders)) {
            const bool own = std::any_of(m_ownFolders.begin(), m_ownFolders.end(), [&path](const QString& folder) {
                return path->startsWith(folder + QLatin1Char('/'));
            });
            const StartupType type = own ? StartupType::userLaunchAgent : StartupType::systemLaunchAgent;
            items.push_back(item(unit, *path, type, {QStringLiteral("default.target")}));
        }
    for (const ListedUnit& unit : listUnitFiles({QStringLiteral("list-unit-files"), QStringLiteral("--type=service"),
                                                 QStringLiteral("--state=enabled"), QStringLiteral("--output=json")}))
        if (const std::optional<QString> path = unitFile(unit.name, m_systemFolders); path && unit.isEnabled)
            items.push_back(item(unit, *path, StartupType::systemLaunchDaemon,
                                 {QStringLiteral("default.target"), QStringLiteral("multi-user.target"),
                                  QStringLiteral("graphical.target")}));
    return items;
}

bool SystemdUnits::owns(const StartupItem& item) const
{
    return item.fileURL && std::any_of(unitSuffixes.begin(), unitSuffixes.end(),
                                       [&](const QString& suffix) { return item.fileURL->endsWith(suffix); });
}

QString SystemdUnits::toggle(const StartupItem& item, bool enable) const
{
    if (!item.fileURL || !m_fileManager->fileExists(*item.fileURL))
        throw StartupError::fileOperationFailed(item.fileURL.value_or(item.label), SystemMessage::of(ENOENT));
    const QString verb = enable ? QStringLiteral("enable") : QStringLiteral("disable");
    if (item.type == StartupType::systemLaunchDaemon)
        throw StartupError::administratorRequired(item.label, QStringLiteral("sudo systemctl ") + verb +
                                                                  QLatin1Char(' ') + item.label);
    if (item.isEnabled == enable)
        return *item.fileURL;
    const ChildCommand command{m_systemctl, {QStringLiteral("--user"), verb, item.label}};
    const QString commandLine = QStringLiteral("systemctl --user ") + verb + QLatin1Char(' ') + item.label;
    CommandResult result;
    try {
        result = m_runner->runWithStatus(command);
    } catch (const ProcessLaunchError& error) {
        throw StartupError::commandFailed(commandLine, error.description());
    }
    if (result.exitStatus != 0) {
        const QByteArray said = result.standardError.trimmed().isEmpty() ? result.standardOutput : result.standardError;
        throw StartupError::commandFailed(commandLine, QString::fromUtf8(said).trimmed());
    }
    return *item.fileURL;
}

std::vector<SystemdUnits::ListedUnit> SystemdUnits::listUnitFiles(const QStringList& arguments) const
{
    CommandResult result;
    try {
        result = m_runner->runWithStatus({m_systemctl, arguments});
    } catch (const ProcessLaunchError&) {
        return {};
    }
    if (result.exitStatus != 0)
        return {};
    std::vector<ListedUnit> units;
    for (const QJsonValue& value : QJsonDocument::fromJson(result.standardOutput).array()) {
        const QString name = value[QStringLiteral("unit_file")].toString();
        const QString state = value[QStringLiteral("state")].toString();
        const bool isEnabled = state == QLatin1String("enabled") || state == QLatin1String("enabled-runtime");
        if (!name.isEmpty() && !name.contains(QLatin1Char('/')) && (isEnabled || state == QLatin1String("disabled")))
            units.push_back({name, isEnabled});
    }
    return units;
}

std::optional<QString> SystemdUnits::unitFile(const QString& unit, const QStringList& folders) const
{
    QStringList names{unit};
    // An instance ("getty@tty1.service") is defined by its template's file ("getty@.service").
    if (const qsizetype at = unit.indexOf(QLatin1Char('@')); at >= 0 && !unit.contains(QStringLiteral("@.")))
        names.append(unit.left(at + 1) + unit.mid(unit.lastIndexOf(QLatin1Char('.'))));
    for (const QString& name : names)
        for (const QString& folder : folders)
            if (const QString path = PathText::appending(folder, name); m_fileManager->fileExists(path))
                return path;
    return std::nullopt;
}

StartupItem SystemdUnits::item(const ListedUnit& unit, const QString& path, StartupType type,
                               const QStringList& startTargets) const
{
    const std::optional<UnitFile> file = UnitFile::read(*m_fileManager, path);
    std::optional<QString> executable;
    StartupImpact impact = StartupImpact::low;
    if (file) {
        const QStringList commands = file->values(service, QStringLiteral("ExecStart"));
        if (!commands.isEmpty())
            executable = UnitFile::commandProgram(commands.first());
        const QString restart = file->value(service, QStringLiteral("Restart")).value_or(QString());
        const QStringList wantedBy = file->values(QStringLiteral("Install"), QStringLiteral("WantedBy"))
                                         .join(QLatin1Char(' '))
                                         .split(QLatin1Char(' '), Qt::SkipEmptyParts);
        // Restarted whenever it ends, it never stops weighing; started with the session or the
        // machine, it weighs at every start.
        if (restart == QLatin1String("always") || restart == QLatin1String("on-failure"))
            impact = StartupImpact::high;
        else if (std::any_of(wantedBy.begin(), wantedBy.end(),
                             [&](const QString& target) { return startTargets.contains(target); }))
            impact = StartupImpact::medium;
    }
    StartupStatus status = unit.isEnabled ? StartupStatus::enabled : StartupStatus::disabled;
    if (executable && !m_programs.exists(*executable))
        status = StartupStatus::orphan;

    return StartupItem{
        .id = QUuid::createUuid(),
        .name = withoutSuffix(unit.name),
        .label = unit.name,
        .type = type,
        .fileURL = path,
        .targetExecutablePath = executable,
        .isEnabled = unit.isEnabled,
        .isRunning = false,
        .requiresAdministrator = type == StartupType::systemLaunchDaemon,
        .status = status,
        .impact = impact,
        .bundleIdentifier = unit.name,
    };
}

} // namespace kestrow
