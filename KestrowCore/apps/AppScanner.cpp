#include "apps/AppScanner.h"

#include "apps/BundleStorage.h"
#include "apps/DesktopAppInspector.h"
#include "apps/InspectionPool.h"
#include "platform/ExecutableHeadReader.h"
#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "platform/PropertyListReader.h"
#include "platform/RunningApplications.h"
#include "support/KestrowError.h"

#include <QCollator>
#include <QSet>
#include <QVariantMap>

namespace kestrow {

namespace {

// A value that is not a string counts as absent.
std::optional<QString> stringValue(const QVariantMap& info, const char* key)
{
    const QVariant value = info.value(QLatin1String(key));
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

QString withoutExtension(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? fileName.left(dot) : fileName;
}

bool isBundleName(const QString& name)
{
    return PathText::pathExtension(name).toLower() == QLatin1String("app");
}

} // namespace

AppScanner::AppScanner(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<const FileManager>())
    , m_runningAppsProvider(std::move(options.runningAppsProvider))
    , m_maxConcurrentInspections(options.maxConcurrentInspections)
    , m_host(options.host.value_or(currentHostSystem()))
    , m_home(options.homeURL.isEmpty() ? ProcessFolders::home() : options.homeURL)
    , m_softwareRoot(options.softwareRoot ? std::move(*options.softwareRoot) : SoftwareRoot::system())
{
    m_applicationsURLs = options.applicationsURLs
                             ? *options.applicationsURLs
                             : (m_host == HostSystem::gnuLinux
                                    ? QStringList()
                                    : QStringList{QStringLiteral("/Applications"),
                                                  PathText::appending(m_home, QStringLiteral("Applications"))});
    m_systemApplicationsURLs =
        options.systemApplicationsURLs
            ? *options.systemApplicationsURLs
            : QStringList{QStringLiteral("/System/Applications"), QStringLiteral("/System/Applications/Utilities"),
                          QStringLiteral("/System/Library/CoreServices/Applications")};
    m_protectedAppGuard = options.protectedAppGuard
                              ? std::move(options.protectedAppGuard)
                              : std::make_shared<const ProtectedAppGuard>(ProtectedAppGuard::Options{
                                    .fileManager = m_fileManager, .runningAppsProvider = m_runningAppsProvider});
}

std::vector<InstalledApp> AppScanner::listInstalledApps(std::stop_token stop) const
{
    return scanInstalledApps(false, std::move(stop));
}

std::vector<InstalledApp> AppScanner::scanInstalledApps(bool includeSystemApps, std::stop_token stop,
                                                        const Progress& progress) const
{
    if (m_host == HostSystem::gnuLinux) {
        const auto desktop =
            std::make_shared<const DesktopApplications>(m_fileManager, m_softwareRoot, m_home, m_applicationsURLs);
        const std::vector<DesktopApplication> applications = desktop->applications(includeSystemApps);
        if (stop.stop_requested())
            throw CancellationError();
        const DesktopAppInspector inspector(m_fileManager, desktop, m_protectedAppGuard, m_softwareRoot.snapMounts);
        return inspectAll(
            applications.size(),
            [&](std::size_t index, const RunningAppsProvider& isRunning) {
                return std::optional<InstalledApp>(inspector.inspect(applications[index], isRunning));
            },
            stop, progress);
    }
    QStringList roots = m_applicationsURLs;
    if (includeSystemApps)
        roots += m_systemApplicationsURLs;
    const QStringList bundles = discoverAppBundles(roots, 2);
    if (stop.stop_requested())
        throw CancellationError();
    return inspectAll(
        static_cast<std::size_t>(bundles.size()),
        [&](std::size_t index, const RunningAppsProvider& isRunning) {
            return inspect(bundles[static_cast<qsizetype>(index)], isRunning);
        },
        stop, progress);
}

std::vector<InstalledApp> AppScanner::inspectAll(std::size_t count, const Inspection& inspectOne,
                                                 const std::stop_token& stop, const Progress& progress) const
{
    // The platform's running applications are looked at once for the whole scan, not once an
    // application: on Linux each look reads every process's entry in /proc.
    RunningAppsProvider isRunning = m_runningAppsProvider;
    if (!isRunning) {
        const QSet<QString> running = RunningApplications::system()->runningIdentifiers();
        isRunning = [running](const QString& identifier) { return running.contains(identifier); };
    }

    std::vector<std::optional<InstalledApp>> inspected(count);
    std::mutex progressMutex;
    std::size_t done = 0;
    InspectionPool(m_maxConcurrentInspections)
        .run(
            inspected.size(),
            [&](std::size_t index) {
                inspected[index] = inspectOne(index, isRunning);
                if (progress) {
                    const std::lock_guard lock(progressMutex);
                    progress(++done, inspected.size());
                }
            },
            stop);
    if (stop.stop_requested())
        throw CancellationError();

    std::vector<InstalledApp> apps;
    apps.reserve(inspected.size());
    for (std::optional<InstalledApp>& app : inspected)
        if (app)
            apps.push_back(std::move(*app));
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(apps.begin(), apps.end(), [&collator](const InstalledApp& a, const InstalledApp& b) {
        return collator.compare(a.displayName, b.displayName) < 0;
    });
    return apps;
}

QStringList AppScanner::discoverAppBundles(const QStringList& roots, int maxDepth) const
{
    const LinkResolver resolver(m_fileManager->systemCalls());
    QSet<QString> visited;
    QStringList found;
    // `resolved` is where `folder` leads; an entry that is no link leads to the same place
    // below it, so only links need resolving.
    const std::function<void(const QString&, const QString&, int)> walk = [&](const QString& folder,
                                                                              const QString& resolved, int depth) {
        const DirectoryListing listing = m_fileManager->contentsOfDirectory(folder, true);
        for (const DirectoryEntry& entry : listing.entries) {
            const QString path = PathText::appending(folder, entry.name);
            const QString target = entry.isSymbolicLink ? resolver.resolvingSymbolicLinks(path)
                                                        : PathText::appending(resolved, entry.name);
            if (visited.contains(target))
                continue;
            if (isBundleName(entry.name)) {
                visited.insert(target);
                found.append(path);
            } else if (depth < maxDepth && entry.isDirectory && !entry.isSymbolicLink) {
                walk(path, target, depth + 1);
            }
        }
    };
    for (const QString& root : roots)
        walk(root, resolver.resolvingSymbolicLinks(root), 0);
    return found;
}

std::optional<InstalledApp> AppScanner::inspectBundle(const QString& bundlePath) const
{
    if (m_runningAppsProvider)
        return inspect(bundlePath, m_runningAppsProvider);
    return inspect(bundlePath, [this](const QString& id) { return m_protectedAppGuard->isRunning(id); });
}

std::optional<InstalledApp> AppScanner::inspect(const QString& bundlePath, const RunningAppsProvider& isRunning) const
{
    if (!m_fileManager->fileExists(bundlePath))
        return std::nullopt;
    const QVariantMap info = PropertyListReader::readDictionary(
                                 *m_fileManager, PathText::appending(bundlePath, QStringLiteral("Contents/Info.plist")))
                                 .value_or(QVariantMap());
    const std::optional<QString> identifier = stringValue(info, "CFBundleIdentifier");
    const std::optional<QString> bundleName = stringValue(info, "CFBundleName");
    const std::optional<QString> shortVersion = stringValue(info, "CFBundleShortVersionString");
    const std::optional<QString> executable = stringValue(info, "CFBundleExecutable");
    const QString baseName = withoutExtension(PathText::lastComponent(bundlePath));

    const QString displayName = stringValue(info, "CFBundleDisplayName").value_or(bundleName.value_or(baseName));
    const QString version =
        shortVersion.value_or(stringValue(info, "CFBundleVersion").value_or(QStringLiteral("Unknown")));
    const QString bundleIdentifier =
        identifier.value_or(QString()).isEmpty() ? QStringLiteral("com.unknown.") + displayName.toLower() : *identifier;

    const QString executables = PathText::appending(bundlePath, QStringLiteral("Contents/MacOS"));
    std::optional<QString> executablePath;
    if (executable)
        executablePath = executables + QLatin1Char('/') + *executable;
    else if (const QString guess = PathText::appending(executables, baseName); m_fileManager->fileExists(guess))
        executablePath = guess;

    const AppArchitecture architecture = detectArchitecture(executablePath);
    const CodeSignatureReport signature = m_protectedAppGuard->inspectCodeSignature(bundlePath);
    const ProtectionEvaluation protection =
        m_protectedAppGuard->evaluateProtection(bundlePath, bundleIdentifier, signature);
    const BundleStorage storage = BundleStorage::measure(*m_fileManager, bundlePath);

    return InstalledApp{
        .id = QUuid::createUuid(),
        .bundleIdentifier = bundleIdentifier,
        .bundlePath = bundlePath,
        .displayName = displayName,
        .version = version,
        .shortVersion = shortVersion,
        .isSystemApp = protection.isProtected,
        .isRunning = isRunning(bundleIdentifier),
        .bundleSizeBytes = storage.allocatedBytes,
        .logicalSizeBytes = storage.logicalBytes > 0 ? storage.logicalBytes : storage.allocatedBytes,
        .architecture = architecture.rawValue(),
        .codeSignatureAuthority = signature.authority,
        .iconPath = resolveIconPath(bundlePath, stringValue(info, "CFBundleIconFile").value_or(QString()),
                                    stringValue(info, "CFBundleIconName").value_or(QString())),
        .executablePath = executablePath,
        .teamIdentifier = signature.teamIdentifier,
        .isProtected = protection.isProtected,
        .protectionReason = protection.reason,
        .bundleName = bundleName,
        .appGroupIdentifiers = std::nullopt,
    };
}

AppArchitecture AppScanner::detectArchitecture(const std::optional<QString>& executablePath) const
{
    if (!executablePath)
        return AppArchitecture::unknown;
    return AppArchitecture::fromProcessors(ExecutableHeadReader::readFile(*m_fileManager, *executablePath));
}

std::optional<QString> AppScanner::resolveIconPath(const QString& bundlePath, const QString& iconFile,
                                                   const QString& iconName) const
{
    const QString resources = PathText::appending(bundlePath, QStringLiteral("Contents/Resources"));
    const QLatin1String icns(".icns");
    QStringList candidates;
    if (!iconFile.isEmpty()) {
        candidates << (iconFile.endsWith(icns) ? iconFile : iconFile + icns) << iconFile;
    }
    if (!iconName.isEmpty())
        candidates << iconName + icns;
    candidates << QStringLiteral("AppIcon.icns");
    for (const QString& candidate : candidates) {
        const QString path = PathText::appending(resources, candidate);
        if (m_fileManager->fileExists(path))
            return path;
    }
    for (const DirectoryEntry& entry : m_fileManager->contentsOfDirectory(resources, false).entries)
        if (entry.name.endsWith(icns))
            return PathText::appending(resources, entry.name);
    const QString assets = PathText::appending(resources, QStringLiteral("Assets.car"));
    if (m_fileManager->fileExists(assets))
        return assets;
    return std::nullopt;
}

} // namespace kestrow
