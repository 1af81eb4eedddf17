#include "platform/DesktopApplications.h"

#include "platform/DesktopEntryFile.h"
#include "platform/PathText.h"
#include "platform/XdgBaseFolders.h"

#include <QRegularExpression>
#include <QSet>

#include <cstdlib>
#include <functional>

namespace kestrow {

namespace {

const QString mainGroup = QStringLiteral("Desktop Entry");
const QLatin1String desktopSuffix(".desktop");
// Entries sit at most this deep below an applications folder ("kde4/foo.desktop").
constexpr int maxEntryDepth = 3;

bool isAppImageName(const QString& name)
{
    return name.endsWith(QLatin1String(".appimage"), Qt::CaseInsensitive) && name.size() > 9;
}

// "Obsidian-1.4.16.AppImage" is "Obsidian"; "tool_x86_64.AppImage" is "tool": the name before a
// version or a processor name.
QString appImageName(const QString& fileName)
{
    QString name = fileName.left(fileName.size() - 9);
    static const QRegularExpression tail(
        QStringLiteral("[-_.](v?\\d[\\w.+~-]*|x86[-_]64|amd64|aarch64|arm64|i[36]86|armhf)$"),
        QRegularExpression::CaseInsensitiveOption);
    for (QRegularExpressionMatch match = tail.match(name); match.hasMatch() && match.capturedStart() > 0;
         match = tail.match(name))
        name.truncate(match.capturedStart());
    return name;
}

// The release version of a Flatpak's metadata file: the first `version="..."` of a <release>.
std::optional<QString> releaseVersion(const QByteArray& xml)
{
    static const QRegularExpression release(QStringLiteral("<release\\b[^>]*\\bversion=\"([^\"]+)\""));
    const QRegularExpressionMatch match = release.match(QString::fromUtf8(xml));
    if (!match.hasMatch())
        return std::nullopt;
    return match.captured(1);
}

bool isVariableAssignment(const QString& argument)
{
    const qsizetype equals = argument.indexOf(QLatin1Char('='));
    return equals > 0 && !argument.left(equals).contains(QLatin1Char('/'));
}

} // namespace

const QStringList& DesktopApplications::appImageFolders()
{
    static const QStringList folders{QStringLiteral("Applications"), QStringLiteral(".local/bin"),
                                     QStringLiteral("bin"), QStringLiteral("Downloads")};
    return folders;
}

DesktopApplications::DesktopApplications(std::shared_ptr<const FileManager> fileManager, SoftwareRoot root,
                                         QString home, QStringList userFolders, QString locale)
    : m_fileManager(std::move(fileManager))
    , m_root(std::move(root))
    , m_home(std::move(home))
    , m_dataHome(XdgBaseFolders::forHome(m_home).dataHome)
    , m_userFolders(std::move(userFolders))
    , m_locale(std::move(locale))
{
}

QString DesktopApplications::localeFromEnvironment()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* value = std::getenv(variable); value && value[0])
            return QString::fromLatin1(value);
    return QString();
}

std::vector<DesktopApplications::Folder> DesktopApplications::entryFolders() const
{
    const QString applications = QStringLiteral("applications");
    const QString userFlatpak = PathText::appending(m_dataHome, QStringLiteral("flatpak/exports/share"));
    const QString systemFlatpak = PathText::appending(m_root.flatpakInstallation, QStringLiteral("exports/share"));
    const QString snap = PathText::appending(m_root.snapdState, QStringLiteral("desktop"));
    std::vector<Folder> folders;
    if (m_userFolders.isEmpty())
        folders.push_back({PathText::appending(m_dataHome, applications), DesktopApplicationOrigin::user});
    for (const QString& folder : m_userFolders)
        folders.push_back({folder, DesktopApplicationOrigin::user});
    folders.push_back({PathText::appending(userFlatpak, applications), DesktopApplicationOrigin::flatpak, true});
    // The data folders often name the Flatpak and Snap exports themselves; they keep their own
    // origin and their place at the end.
    for (const QString& data : m_root.dataDirectories) {
        const QString standardized = PathText::standardizing(data);
        if (standardized != systemFlatpak && standardized != userFlatpak && standardized != snap)
            folders.push_back({PathText::appending(standardized, applications), DesktopApplicationOrigin::system});
    }
    folders.push_back({PathText::appending(systemFlatpak, applications), DesktopApplicationOrigin::flatpak});
    folders.push_back({PathText::appending(snap, applications), DesktopApplicationOrigin::snap});
    return folders;
}

std::vector<DesktopApplication> DesktopApplications::entries() const
{
    std::vector<DesktopApplication> found;
    QSet<QString> seen;
    for (const Folder& folder : entryFolders()) {
        const std::function<void(const QString&, const QString&, int)> visit = [&](const QString& path,
                                                                                   const QString& prefix, int depth) {
            for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(path, true).entries) {
                const QString entryPath = PathText::appending(path, entry.name);
                if (entry.isDirectory) {
                    if (depth + 1 < maxEntryDepth)
                        visit(entryPath, prefix + entry.name + QLatin1Char('-'), depth + 1);
                    continue;
                }
                if (!entry.name.endsWith(desktopSuffix))
                    continue;
                const QString id = prefix + entry.name.chopped(desktopSuffix.size());
                // The first folder that has the id decides, even with an entry that hides it.
                if (seen.contains(id))
                    continue;
                seen.insert(id);
                if (std::optional<DesktopApplication> application = readEntry(entryPath, id, folder))
                    found.push_back(std::move(*application));
            }
        };
        visit(folder.path, QString(), 0);
    }
    return found;
}

std::optional<DesktopApplication> DesktopApplications::readEntry(const QString& path, const QString& desktopId,
                                                                 const Folder& folder) const
{
    const std::optional<DesktopEntryFile> entry = DesktopEntryFile::read(*m_fileManager, path);
    if (!entry || !entry->hasGroup(mainGroup))
        return std::nullopt;
    const std::optional<QString> type = entry->string(mainGroup, QStringLiteral("Type"));
    if (type && *type != QLatin1String("Application"))
        return std::nullopt;
    DesktopApplication application{
        .desktopId = desktopId,
        .origin = folder.origin,
        .entryPath = path,
        .name = entry->localeString(mainGroup, QStringLiteral("Name"), m_locale).value_or(desktopId),
        .tryExec = entry->string(mainGroup, QStringLiteral("TryExec")),
        .icon = entry->string(mainGroup, QStringLiteral("Icon")),
        .startupWMClass = entry->string(mainGroup, QStringLiteral("StartupWMClass")),
        .version = entry->string(mainGroup, QStringLiteral("X-AppImage-Version")),
        .hidden = entry->boolean(mainGroup, QStringLiteral("Hidden")).value_or(false),
        .noDisplay = entry->boolean(mainGroup, QStringLiteral("NoDisplay")).value_or(false),
    };
    describeLauncher(*entry, application);
    if (const std::optional<QString> flatpak = entry->string(mainGroup, QStringLiteral("X-Flatpak"))) {
        application.origin = DesktopApplicationOrigin::flatpak;
        application.flatpakId = *flatpak;
    }
    if (const std::optional<QString> snap = entry->string(mainGroup, QStringLiteral("X-SnapInstanceName")))
        application.snapName = *snap;
    else if (folder.origin == DesktopApplicationOrigin::snap)
        application.snapName = desktopId.section(QLatin1Char('_'), 0, 0);
    if (application.snapName)
        application.origin = DesktopApplicationOrigin::snap;
    if (application.flatpakId) {
        // An entry of the user's own folder that starts a Flatpak counts for the user's
        // installation when that one holds it.
        const QString userDeployment =
            PathText::appending(m_dataHome, QStringLiteral("flatpak/app/") + *application.flatpakId);
        application.flatpakUserInstallation = folder.flatpakUser || (folder.origin == DesktopApplicationOrigin::user &&
                                                                     m_fileManager->fileExists(userDeployment));
        application.flatpakDeployment =
            application.flatpakUserInstallation
                ? userDeployment
                : PathText::appending(m_root.flatpakInstallation, QStringLiteral("app/") + *application.flatpakId);
        if (!application.version)
            application.version = flatpakVersion(*application.flatpakDeployment, *application.flatpakId);
    }
    return application;
}

void DesktopApplications::describeLauncher(const DesktopEntryFile& entry, DesktopApplication& application) const
{
    const std::optional<QString> exec = entry.string(mainGroup, QStringLiteral("Exec"));
    const std::optional<QStringList> arguments = exec ? DesktopEntryFile::execArguments(*exec) : std::nullopt;
    if (!arguments)
        return;
    qsizetype index = 0;
    // "env NAME=value program": the program is what env starts.
    if (index < arguments->size() && PathText::lastComponent(arguments->at(index)) == QLatin1String("env"))
        for (++index; index < arguments->size() && isVariableAssignment(arguments->at(index));)
            ++index;
    if (index >= arguments->size())
        return;
    const QString program = arguments->at(index);
    if (PathText::lastComponent(program) == QLatin1String("flatpak") &&
        arguments->mid(index).contains(QStringLiteral("run"))) {
        // "flatpak run [options] [--command=name] id [arguments]".
        const QStringList rest = arguments->mid(arguments->indexOf(QStringLiteral("run"), index) + 1);
        for (const QString& argument : rest) {
            if (argument.startsWith(QLatin1String("--command=")))
                application.program = argument.mid(10);
            else if (!argument.startsWith(QLatin1Char('-')) && !application.flatpakId)
                application.flatpakId = argument;
        }
        if (!application.program && application.flatpakId)
            application.program = application.flatpakId->section(QLatin1Char('.'), -1);
        return;
    }
    application.program = program;
}

std::optional<QString> DesktopApplications::flatpakVersion(const QString& deployment, const QString& id) const
{
    const QString share = PathText::appending(deployment, QStringLiteral("current/active/files/share"));
    const QStringList files{QStringLiteral("metainfo/") + id + QStringLiteral(".metainfo.xml"),
                            QStringLiteral("metainfo/") + id + QStringLiteral(".appdata.xml"),
                            QStringLiteral("appdata/") + id + QStringLiteral(".appdata.xml")};
    for (const QString& relative : files) {
        const FileManager::RegularFileRead read =
            m_fileManager->readRegularFile(PathText::appending(share, relative), DesktopEntryFile::maxFileBytes, true);
        if (read.errorCode == 0)
            return releaseVersion(read.bytes);
    }
    return std::nullopt;
}

std::vector<DesktopApplication> DesktopApplications::applications(bool includeSystem) const
{
    const std::vector<DesktopApplication> all = entries();
    std::vector<DesktopApplication> shown;
    QSet<QString> packaged; // one application per Flatpak and per Snap, whatever entries it exports
    for (const DesktopApplication& application : all) {
        if (application.hidden || application.noDisplay)
            continue;
        if (application.origin == DesktopApplicationOrigin::system && !includeSystem)
            continue;
        const std::optional<QString> package = application.flatpakId ? application.flatpakId : application.snapName;
        if (package && packaged.contains(*package))
            continue;
        if (package)
            packaged.insert(*package);
        shown.push_back(application);
    }
    // An AppImage's integration entry describes the AppImage and is no application of its own.
    const std::vector<DesktopApplication> images = appImages(all);
    for (const DesktopApplication& image : images)
        std::erase_if(shown, [&image](const DesktopApplication& application) {
            return image.entryPath && application.entryPath == image.entryPath;
        });
    shown.insert(shown.end(), images.begin(), images.end());
    return shown;
}

std::vector<DesktopApplication> DesktopApplications::appImages(const std::vector<DesktopApplication>& entries) const
{
    std::vector<DesktopApplication> found;
    QStringList folders = m_userFolders;
    if (folders.isEmpty())
        for (const QString& relative : appImageFolders())
            folders.append(PathText::appending(m_home, relative));
    for (const QString& folder : folders) {
        for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(folder, true).entries) {
            if (entry.isDirectory || !isAppImageName(entry.name))
                continue;
            const QString path = PathText::appending(folder, entry.name);
            const auto integration = std::find_if(entries.begin(), entries.end(), [&](const DesktopApplication& known) {
                return known.origin == DesktopApplicationOrigin::user && !known.hidden &&
                       (known.program == path || known.tryExec == path);
            });
            DesktopApplication image = integration != entries.end() ? *integration : DesktopApplication{};
            if (integration == entries.end()) {
                image.name = appImageName(entry.name);
                image.desktopId = image.name;
                image.program = path;
            }
            image.origin = DesktopApplicationOrigin::appImage;
            image.appImagePath = path;
            found.push_back(std::move(image));
        }
    }
    return found;
}

QStringList DesktopApplications::iconRoots() const
{
    QStringList roots{PathText::appending(m_dataHome, QStringLiteral("icons")),
                      PathText::appending(m_dataHome, QStringLiteral("flatpak/exports/share/icons"))};
    for (const QString& data : m_root.dataDirectories)
        roots.append(PathText::appending(data, QStringLiteral("icons")));
    roots.append(PathText::appending(m_root.flatpakInstallation, QStringLiteral("exports/share/icons")));
    return roots;
}

std::optional<QString> DesktopApplications::iconPath(const QString& icon) const
{
    if (icon.isEmpty())
        return std::nullopt;
    if (icon.startsWith(QLatin1Char('/')))
        return m_fileManager->fileExists(icon) ? std::optional<QString>(icon) : std::nullopt;
    if (icon.contains(QLatin1Char('/')))
        return std::nullopt;
    static const QStringList sizes{QStringLiteral("scalable"), QStringLiteral("512x512"), QStringLiteral("256x256"),
                                   QStringLiteral("128x128"),  QStringLiteral("64x64"),   QStringLiteral("48x48"),
                                   QStringLiteral("32x32")};
    static const QStringList extensions{QStringLiteral(".svg"), QStringLiteral(".png"), QStringLiteral(".xpm")};
    QStringList candidates;
    for (const QString& root : iconRoots())
        for (const QString& size : sizes)
            for (const QString& extension : extensions)
                candidates.append(root + QStringLiteral("/hicolor/") + size + QStringLiteral("/apps/") + icon +
                                  extension);
    for (const QString& data : m_root.dataDirectories)
        for (const QString& extension : extensions)
            candidates.append(data + QStringLiteral("/pixmaps/") + icon + extension);
    for (const QString& candidate : candidates)
        if (m_fileManager->fileExists(candidate))
            return candidate;
    return std::nullopt;
}

std::optional<QString> DesktopApplications::programPath(const QString& program) const
{
    if (program.isEmpty())
        return std::nullopt;
    if (program.contains(QLatin1Char('/')))
        return program.startsWith(QLatin1Char('/')) ? std::optional<QString>(program) : std::nullopt;
    for (const QString& folder : m_root.executableSearchPath) {
        const QString candidate = PathText::appending(folder, program);
        bool isDirectory = false;
        if (m_fileManager->fileExists(candidate, &isDirectory) && !isDirectory)
            return candidate;
    }
    return std::nullopt;
}

} // namespace kestrow
