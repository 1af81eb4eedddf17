#include "apps/DependencyResolver.h"

#include "apps/FootprintMeasurer.h"
#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "platform/XdgBaseFolders.h"

#include <QSet>

namespace kestrow {

namespace {

// Words of the Library's own layout: never a candidate, whatever an application is called.
const QStringList& blockedNames()
{
    static const QStringList names{
        QStringLiteral("."),
        QStringLiteral(".."),
        QStringLiteral(".DS_Store"),
        QStringLiteral("Apple"),
        QStringLiteral("System"),
        QStringLiteral("Library"),
        QStringLiteral("Preferences"),
        QStringLiteral("Application Support"),
        QStringLiteral("Caches"),
        QStringLiteral("Containers"),
        QStringLiteral("Logs"),
        QStringLiteral("DiagnosticReports"),
        QStringLiteral(".GlobalPreferences"),
        QStringLiteral(".GlobalPreferences.plist"),
    };
    return names;
}

// Shared folders and files of a Linux home's XDG folders, and the launchers that start other
// programs: never a candidate there either.
const QStringList& linuxBlockedNames()
{
    static const QStringList names{
        QStringLiteral("autostart"),
        QStringLiteral("applications"),
        QStringLiteral("icons"),
        QStringLiteral("fonts"),
        QStringLiteral("mime"),
        QStringLiteral("systemd"),
        QStringLiteral("dconf"),
        QStringLiteral("gtk-2.0"),
        QStringLiteral("gtk-3.0"),
        QStringLiteral("gtk-4.0"),
        QStringLiteral("pulse"),
        QStringLiteral("Trash"),
        QStringLiteral("keyrings"),
        QStringLiteral("menus"),
        QStringLiteral("desktop-directories"),
        QStringLiteral("fontconfig"),
        QStringLiteral("flatpak"),
        QStringLiteral("snap"),
        QStringLiteral("env"),
        QStringLiteral("sh"),
        QStringLiteral("bash"),
        QStringLiteral("sessions"),
        QStringLiteral("recently-used.xbel"),
        QStringLiteral("mimeapps.list"),
        QStringLiteral("user-dirs.dirs"),
        QStringLiteral("user-dirs.locale"),
        QStringLiteral("themes"),
        QStringLiteral("gvfs-metadata"),
        QStringLiteral("xdg-desktop-portal"),
        QStringLiteral("pipewire"),
        QStringLiteral("wireplumber"),
        QStringLiteral("gnome-shell"),
    };
    return names;
}

void addOnce(QStringList& list, const QString& text)
{
    if (!text.isEmpty() && !list.contains(text))
        list.append(text);
}

QStringList filtered(const QStringList& candidates, qsizetype minimumLength, HostSystem host)
{
    QStringList kept;
    for (const QString& candidate : candidates) {
        if (candidate.size() < minimumLength || blockedNames().contains(candidate) ||
            candidate.startsWith(QLatin1String("com.apple.")) ||
            (host == HostSystem::gnuLinux && linuxBlockedNames().contains(candidate, Qt::CaseInsensitive)))
            continue;
        kept.append(candidate);
    }
    return kept;
}

// "acme" as "Acme": the first letter upper case, the rest lower.
QString capitalized(const QString& word)
{
    return word.left(1).toUpper() + word.mid(1).toLower();
}

// A name from an application's record reaches the disk only as names inside the folder it
// is looked up in: no empty, "." or ".." component that would lead elsewhere.
bool staysInside(const QString& relative)
{
    for (const QString& component : relative.split(QLatin1Char('/')))
        if (component.isEmpty() || component == QLatin1String(".") || component == QLatin1String(".."))
            return false;
    return true;
}

bool isWithin(const QString& path, const QString& folder)
{
    if (folder.isEmpty())
        return false;
    if (folder == QLatin1String("/"))
        return true;
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

} // namespace

// One resolution: the items found so far, the places already claimed, the inodes counted.
class DependencyResolver::Run {
public:
    Run(const DependencyResolver& resolver, const InstalledApp& app)
        : m_host(resolver.m_host)
        , m_fileManager(*resolver.m_fileManager)
        , m_links(m_fileManager.systemCalls())
        , m_measurer(m_fileManager)
        , m_library(PathText::appending(resolver.m_home, QStringLiteral("Library")))
        , m_home(resolver.m_home)
        , m_bundle(app.bundlePath)
        , m_icon(app.iconPath)
        , m_candidates(resolver.generateSearchCandidates(app))
    {
        m_allCandidates = m_candidates.candidateBundleIds + m_candidates.candidateNames;
    }

    std::vector<ResolvedDependency> resolve()
    {
        if (m_fileManager.fileExists(m_bundle)) {
            m_visited.insert(visitKey(PathText::standardizing(m_bundle)));
            append(PathText::standardizing(m_bundle), DependencyLocation::applicationBundle);
        }
        if (m_host == HostSystem::gnuLinux) {
            resolveXdg();
            return std::move(m_results);
        }
        const QStringList shipIt{{}, QStringLiteral(".ShipIt"), QStringLiteral(".shipit")};
        const QStringList cookies{{}, QStringLiteral(".binarycookies")};
        inFolder(folder(QStringLiteral("Application Support")), DependencyLocation::applicationSupport, {{}}, true);
        inFolder(folder(QStringLiteral("Caches")), DependencyLocation::caches, shipIt, true);
        preferences();
        inFolder(folder(QStringLiteral("Saved Application State")), DependencyLocation::savedApplicationState,
                 {QStringLiteral(".savedState")}, false);
        inFolder(folder(QStringLiteral("WebKit")), DependencyLocation::webKit, {{}}, false);
        inFolder(folder(QStringLiteral("HTTPStorages")), DependencyLocation::httpStorages, cookies, false);
        inFolder(folder(QStringLiteral("Containers")), DependencyLocation::containers, {{}}, false);
        groupContainers();
        inFolder(folder(QStringLiteral("Application Scripts")), DependencyLocation::applicationScripts, {{}}, false);
        launchAgents();
        crashReports();
        logFolders();
        return std::move(m_results);
    }

private:
    [[nodiscard]] QString folder(const QString& relative) const { return PathText::appending(m_library, relative); }

    // The XDG folders stand for the Library's: settings for preferences, data for application
    // support, state for saved state, the Flatpak and Snap data folders for containers, and
    // autostart entries for launch agents.
    void resolveXdg()
    {
        const XdgBaseFolders xdg = XdgBaseFolders::forHome(m_home);
        const QString applications = PathText::appending(xdg.dataHome, QStringLiteral("applications"));
        for (const QString& id : m_candidates.candidateBundleIds)
            appendIfValid(applications, id + QStringLiteral(".desktop"), DependencyLocation::applicationBundle);
        icons(PathText::appending(xdg.dataHome, QStringLiteral("icons")));
        inFolder(xdg.configHome, DependencyLocation::preferences, {{}}, true);
        inFolder(xdg.dataHome, DependencyLocation::applicationSupport, {{}}, true);
        inFolder(xdg.cacheHome, DependencyLocation::caches, {{}}, true);
        inFolder(xdg.stateHome, DependencyLocation::savedApplicationState, {{}}, false);
        const QString flatpakData = PathText::appending(m_home, QStringLiteral(".var/app"));
        for (const QString& id : m_candidates.candidateBundleIds)
            appendIfValid(flatpakData, id, DependencyLocation::containers);
        inFolder(PathText::appending(m_home, QStringLiteral("snap")), DependencyLocation::containers, {{}}, false);
        inFolder(PathText::appending(xdg.configHome, QStringLiteral("autostart")), DependencyLocation::launchAgents,
                 {QStringLiteral(".desktop")}, false);
    }

    // Each candidate with each suffix, then (when asked) each vendor subpath, as entries of
    // the folder `base`.
    void inFolder(const QString& base, DependencyLocation location, const QStringList& suffixes, bool vendors)
    {
        if (!isDirectory(base))
            return;
        for (const QString& candidate : m_allCandidates)
            for (const QString& suffix : suffixes)
                appendIfValid(base, candidate + suffix, location);
        if (vendors)
            for (const QString& subpath : m_candidates.vendorSubpaths)
                appendIfValid(base, subpath, location);
    }

    // The application's icon in the home's icon themes, in every size: "<theme>/<size>/apps/<name>".
    void icons(const QString& base)
    {
        if (!m_icon || !isWithin(PathText::standardizing(*m_icon), PathText::standardizing(base)))
            return;
        const QString name = PathText::lastComponent(*m_icon);
        for (const QString& theme : entries(base))
            for (const QString& size : entries(PathText::appending(base, theme)))
                appendIfValid(base, theme + QLatin1Char('/') + size + QStringLiteral("/apps/") + name,
                              DependencyLocation::applicationBundle);
    }

    [[nodiscard]] bool isDirectory(const QString& path) const
    {
        bool directory = false;
        return m_fileManager.fileExists(path, &directory) && directory;
    }

    [[nodiscard]] QStringList entries(const QString& path) const
    {
        QStringList names;
        for (const DirectoryEntry& entry : m_fileManager.contentsOfDirectory(path, true).entries)
            names.append(entry.name);
        return names;
    }

    [[nodiscard]] QString resolved(const QString& standardized) const
    {
        return PathText::standardizing(m_links.resolvingSymbolicLinks(standardized));
    }

    [[nodiscard]] QString visitKey(const QString& standardized) const { return resolved(standardized).toLower(); }

    void preferences()
    {
        const QString base = folder(QStringLiteral("Preferences"));
        if (!isDirectory(base))
            return;
        const QString plist = QStringLiteral(".plist");
        const QString byHost = PathText::appending(base, QStringLiteral("ByHost"));
        const QStringList hostEntries = entries(byHost);
        for (const QString& id : m_candidates.candidateBundleIds) {
            appendIfValid(base, id + plist, DependencyLocation::preferences);
            appendIfValid(base, id + QStringLiteral(".plist.lockfile"), DependencyLocation::preferences);
            for (const QString& name : hostEntries)
                if (name.startsWith(id + QLatin1Char('.')) && name.endsWith(plist))
                    appendIfValid(byHost, name, DependencyLocation::preferences);
        }
        // A helper's preferences carry the identifier and a further part: the "." ends the
        // identifier, so that another application whose identifier merely starts the same is
        // left alone.
        for (const QString& name : entries(base)) {
            if (!name.endsWith(plist))
                continue;
            for (const QString& id : m_candidates.candidateBundleIds)
                if (name.startsWith(id + QLatin1Char('.')))
                    appendIfValid(base, name, DependencyLocation::preferences);
        }
    }

    void groupContainers()
    {
        const QString base = folder(QStringLiteral("Group Containers"));
        if (!isDirectory(base))
            return;
        for (const QString& group : m_candidates.appGroupIds)
            appendIfValid(base, group, DependencyLocation::groupContainers);
        // A team prefix leads the name of a group container: "TEAMID.com.acme.widget".
        for (const QString& name : entries(base))
            for (const QString& id : m_candidates.candidateBundleIds)
                if (name.endsWith(QLatin1Char('.') + id) || name == QStringLiteral("group.") + id)
                    appendIfValid(base, name, DependencyLocation::groupContainers);
    }

    void launchAgents()
    {
        const QString base = folder(QStringLiteral("LaunchAgents"));
        if (!isDirectory(base))
            return;
        for (const QString& name : entries(base)) {
            if (!name.endsWith(QLatin1String(".plist")))
                continue;
            for (const QString& id : m_candidates.candidateBundleIds)
                if (name.startsWith(id))
                    appendIfValid(base, name, DependencyLocation::launchAgents);
        }
    }

    void crashReports()
    {
        const QString base = folder(QStringLiteral("Logs/DiagnosticReports"));
        if (!isDirectory(base))
            return;
        for (const QString& name : entries(base)) {
            if (!name.endsWith(QLatin1String(".ips")) && !name.endsWith(QLatin1String(".crash")))
                continue;
            // "Name-date.ips", "Name_date.ips" and "Name.ips" all begin with the name.
            const auto matches = [&name](const QString& candidate) { return name.startsWith(candidate); };
            if (std::any_of(m_candidates.candidateNames.begin(), m_candidates.candidateNames.end(), matches) ||
                std::any_of(m_candidates.candidateBundleIds.begin(), m_candidates.candidateBundleIds.end(), matches))
                appendIfValid(base, name, DependencyLocation::crashReports);
        }
    }

    void logFolders()
    {
        const QString base = folder(QStringLiteral("Logs"));
        if (!isDirectory(base))
            return;
        for (const QString& candidate : m_allCandidates)
            if (staysInside(candidate) && isDirectory(PathText::appending(base, candidate)))
                appendIfValid(base, candidate, DependencyLocation::crashReports);
    }

    // The gate of every hit: claimed once, existing, and not leading out of the home or the
    // bundle through a link.
    void appendIfValid(const QString& base, const QString& relative, DependencyLocation location)
    {
        if (!staysInside(relative))
            return;
        const QString path = PathText::standardizing(PathText::appending(base, relative));
        const QString target = resolved(path);
        const QString key = target.toLower();
        if (m_visited.contains(key) || !m_fileManager.fileExists(path))
            return;
        if (!isWithin(target, resolved(PathText::standardizing(m_home))) &&
            !isWithin(target, resolved(PathText::standardizing(m_bundle))))
            return;
        m_visited.insert(key);
        append(path, location);
    }

    void append(const QString& path, DependencyLocation location)
    {
        const SizingMetrics metrics = m_measurer.measureItem(path);
        m_results.push_back(ResolvedDependency{
            .id = QUuid::createUuid(),
            .path = path,
            .location = location,
            .allocatedSizeBytes = metrics.allocatedBytes,
            .logicalSizeBytes = metrics.logicalBytes < 1 ? metrics.allocatedBytes : metrics.logicalBytes,
            .fileCount = metrics.fileCount,
            .lastModifiedDate = metrics.lastModifiedDate,
            .isDirectory = metrics.isDirectory,
            .isSymlink = metrics.isSymlink,
        });
    }

    HostSystem m_host;
    const FileManager& m_fileManager;
    LinkResolver m_links;
    FootprintMeasurer m_measurer;
    QString m_library;
    QString m_home;
    QString m_bundle;
    std::optional<QString> m_icon;
    SearchCandidates m_candidates;
    QStringList m_allCandidates;
    QSet<QString> m_visited;
    std::vector<ResolvedDependency> m_results;
};

DependencyResolver::DependencyResolver(Options options)
    : m_home(options.homeURL.isEmpty() ? ProcessFolders::home() : std::move(options.homeURL))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<const FileManager>())
    , m_entitlementsReader(std::move(options.entitlementsReader))
    , m_host(options.host.value_or(currentHostSystem()))
{
}

AppFootprint DependencyResolver::resolveDependencies(const InstalledApp& app) const
{
    return AppFootprint(app, Run(*this, app).resolve());
}

DependencyResolver::SearchCandidates DependencyResolver::generateSearchCandidates(const InstalledApp& app) const
{
    const QString identifier = app.bundleIdentifier.trimmed();
    const QString displayName = app.displayName.trimmed();
    const std::optional<QString> bundleName =
        app.bundleName ? std::optional<QString>(app.bundleName->trimmed()) : std::nullopt;
    const QStringList parts = identifier.split(QLatin1Char('.'), Qt::SkipEmptyParts);

    QStringList ids;
    addOnce(ids, identifier);
    addOnce(ids, identifier.toLower());

    QStringList names;
    QString joined = displayName;
    joined.remove(QLatin1Char(' '));
    addOnce(names, displayName);
    addOnce(names, joined);
    addOnce(names, joined.toLower());
    addOnce(names, QString(displayName).replace(QLatin1Char(' '), QLatin1Char('-')).toLower());
    addOnce(names, QString(displayName).replace(QLatin1Char(' '), QLatin1Char('_')).toLower());
    if (bundleName && !bundleName->isEmpty()) {
        addOnce(names, *bundleName);
        addOnce(names, QString(*bundleName).remove(QLatin1Char(' ')));
    }
    if (parts.size() >= 3 && parts.last().size() >= 3)
        addOnce(names, parts.last());
    if (m_host == HostSystem::gnuLinux) {
        // The program's own name ("gnome-text-editor") and the window class in lower case
        // ("obsidian"); an AppImage's file name is no program name.
        if (app.executablePath && !app.executablePath->endsWith(QLatin1String(".appimage"), Qt::CaseInsensitive))
            addOnce(names, PathText::lastComponent(*app.executablePath));
        if (bundleName)
            addOnce(names, bundleName->toLower());
    }

    QStringList vendors;
    if (parts.size() >= 3) {
        const QString vendor = capitalized(parts.at(1));
        addOnce(vendors, vendor + QLatin1Char('/') + parts.last());
        if (displayName != parts.last())
            addOnce(vendors, vendor + QLatin1Char('/') + displayName);
    }
    const QStringList words = displayName.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.size() >= 2)
        addOnce(vendors, words.first() + QLatin1Char('/') + words.mid(1).join(QLatin1Char(' ')));

    QStringList groups;
    for (const QString& group : app.appGroupIdentifiers.value_or(QStringList()))
        addOnce(groups, group);
    if (m_entitlementsReader)
        for (const QString& group : m_entitlementsReader(app.bundlePath))
            addOnce(groups, group);
    if (!identifier.isEmpty())
        addOnce(groups, QStringLiteral("group.") + identifier);

    return SearchCandidates{
        .primaryBundleId = identifier,
        .primaryDisplayName = displayName,
        .bundleName = bundleName,
        .candidateNames = filtered(names, 2, m_host),
        .candidateBundleIds = filtered(ids, 3, m_host),
        .vendorSubpaths = vendors,
        .appGroupIds = groups,
    };
}

} // namespace kestrow
