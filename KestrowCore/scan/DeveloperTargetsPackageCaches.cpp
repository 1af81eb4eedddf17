// The package manager, build tool and git worktree sub-scans of DeveloperTargets.
#include "scan/DeveloperTargets.h"

#include "platform/NativePath.h"
#include "support/PathText.h"

#include <QFile>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <fcntl.h>
#include <initializer_list>

namespace kestrow {

namespace {

struct Folder {
    QLatin1String relative;
    QLatin1String description;
};

TargetScan::Location cacheLocation(const QString& path, const QString& description, const QString& ruleId)
{
    return {
        .path = path, .category = StorageCategory::developerCache, .description = description, .defaultRuleId = ruleId};
}

void scanNpm(TargetScan& scan, const FileManager& fileManager, const QString& home)
{
    const QString ruleId = QStringLiteral("dev.npm.cache");
    const QString root = PathText::appending(home, QStringLiteral(".npm"));
    if (!fileManager.fileExists(root))
        return;
    bool emitted = false;
    for (const char* name : {"_cacache", "_npx", "_logs", "_prebuilds"}) {
        const QString subfolder = QLatin1String(name);
        emitted |= scan.emitIfContent(
            cacheLocation(PathText::appending(root, subfolder),
                          QStringLiteral("npm Download Cache (") + subfolder + QLatin1Char(')'), ruleId));
    }
    if (!emitted)
        scan.emitIfContent(cacheLocation(root, QStringLiteral("npm Package Cache"), ruleId));
}

// Each known folder below `root` with content becomes an item. A path holding `neverTarget`
// is left alone whatever else holds: tool binaries and the user's own settings are no cache.
void emitKnownFolders(TargetScan& scan, const QString& root, std::initializer_list<Folder> folders,
                      const QString& ruleId, QLatin1String neverTarget)
{
    for (const Folder& folder : folders) {
        const QString path = PathText::appending(root, folder.relative);
        if (path.contains(neverTarget))
            continue;
        scan.emitIfContent(cacheLocation(path, folder.description, ruleId));
    }
}

void addMetrics(MeasuredMetrics& total, const MeasuredMetrics& part)
{
    const auto latest = [](std::optional<QDateTime>& held, const std::optional<QDateTime>& seen) {
        if (seen && (!held || *seen > *held))
            held = seen;
    };
    total.allocatedBytes += part.allocatedBytes;
    total.logicalBytes += part.logicalBytes;
    total.fileCount += part.fileCount;
    latest(total.lastAccessedDate, part.lastAccessedDate);
    latest(total.lastModifiedDate, part.lastModifiedDate);
    total.requiresFullDiskAccess = total.requiresFullDiskAccess || part.requiresFullDiskAccess;
}

bool isIncompleteDownload(const QString& name)
{
    // The extension as the platform sees it: a leading dot starts no extension.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool extensionMatches = dot > 0 && name.mid(dot + 1).toLower() == QLatin1String("incomplete");
    return extensionMatches || name.endsWith(QLatin1String(".incomplete"));
}

// Unfinished downloads are items of their own; the finished bottles and packages are summed
// into one item for the folder.
void scanHomebrewDownloads(TargetScan& scan, const FileManager& fileManager, const QString& downloads)
{
    const QString cacheRuleId = QStringLiteral("dev.homebrew.cache");
    const DirectoryListing listing = fileManager.contentsOfDirectory(downloads, false);
    if (!listing.ok()) {
        scan.emitIfContent(cacheLocation(downloads, QStringLiteral("Homebrew Download Cache"), cacheRuleId));
        return;
    }
    QStringList finished;
    for (const DirectoryEntry& entry : listing.entries) {
        const QString path = PathText::appending(downloads, entry.name);
        if (isIncompleteDownload(entry.name))
            scan.emitIfContent(cacheLocation(path, QStringLiteral("Homebrew Incomplete Download: ") + entry.name,
                                             QStringLiteral("dev.homebrew.incomplete")));
        else
            finished.append(path);
    }
    if (finished.isEmpty())
        return;
    MeasuredMetrics total;
    for (const QString& path : finished)
        addMetrics(total, scan.measure(path));
    if (total.fileCount >= 1 && (total.allocatedBytes > 0 || total.logicalBytes >= 1))
        scan.emit(cacheLocation(downloads, QStringLiteral("Homebrew Downloaded Bottles & Packages"), cacheRuleId),
                  total);
}

bool holdsGit(const FileManager& fileManager, const QString& folder)
{
    return fileManager.fileExists(PathText::appending(folder, QStringLiteral(".git")));
}

bool isSkippedFolder(const QString& name)
{
    // Folders that hold dependencies, build products or personal files rather than projects.
    constexpr QLatin1String skipped[] = {
        QLatin1String("node_modules"), QLatin1String(".build"),      QLatin1String("Pods"),
        QLatin1String("Carthage"),     QLatin1String("vendor"),      QLatin1String("build"),
        QLatin1String("dist"),         QLatin1String("DerivedData"), QLatin1String("Library"),
        QLatin1String("Pictures"),     QLatin1String("Music"),       QLatin1String("Movies"),
        QLatin1String("Downloads"),    QLatin1String("Documents"),   QLatin1String("Desktop"),
        QLatin1String(".Trash"),       QLatin1String(".cache"),      QLatin1String(".local"),
    };
    return std::find(std::begin(skipped), std::end(skipped), name) != std::end(skipped);
}

// Repositories below `folder`, in listing order, not looking inside a repository once found.
// A link to a folder is not a folder in a listing, so links are never followed.
QStringList discoverGitRepositories(const FileManager& fileManager, const QString& folder, int maxDepth = 2,
                                    int currentDepth = 1)
{
    QStringList repositories;
    if (currentDepth > maxDepth)
        return repositories;
    const DirectoryListing listing = fileManager.contentsOfDirectory(folder, true);
    if (!listing.ok())
        return repositories;
    for (const DirectoryEntry& entry : listing.entries) {
        if (!entry.isDirectory || isSkippedFolder(entry.name))
            continue;
        const QString child = PathText::appending(folder, entry.name);
        if (holdsGit(fileManager, child))
            repositories.append(child);
        else if (currentDepth < maxDepth)
            repositories += discoverGitRepositories(fileManager, child, maxDepth, currentDepth + 1);
    }
    return repositories;
}

// A git marker file (".git" of a checkout, "gitdir" of a worktree entry) as trimmed UTF-8 text;
// nothing when it is not a regular file, can't be read or isn't UTF-8.
std::optional<QString> readMarker(const FileManager& fileManager, const QString& path)
{
    const std::optional<FileStatus> status = fileManager.status(path, true);
    if (!status || !status->isRegularFile())
        return std::nullopt;
    // Opened by the name's own bytes: QFile would open a lossy spelling of it, another file.
    const UniqueFd fd(fileManager.systemCalls().openAt(AT_FDCWD, NativePath::encode(path).constData(), O_RDONLY));
    QFile file;
    if (!fd.isOpen() || !file.open(fd.get(), QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text.trimmed();
}

// Whether the other half a marker names is still there. Git writes relative paths against the
// folder that holds the marker.
bool markerTargetExists(const FileManager& fileManager, const QString& target, const QString& markerFolder)
{
    if (target.isEmpty())
        return true;
    return fileManager.fileExists(target.startsWith(QLatin1Char('/')) ? target
                                                                      : PathText::appending(markerFolder, target));
}

TargetScan::Location orphanedWorktree(const QString& path, const QString& description)
{
    TargetScan::Location location = cacheLocation(path, description, QStringLiteral("dev.git.orphaned_worktrees"));
    location.isOrphaned = true;
    return location;
}

void scanRepositoryWorktrees(TargetScan& scan, const FileManager& fileManager, const QString& repository)
{
    const QString name = PathText::lastComponent(repository);
    const QString git = PathText::appending(repository, QStringLiteral(".git"));
    bool gitIsDirectory = false;
    if (!fileManager.fileExists(git, &gitIsDirectory))
        return;

    if (!gitIsDirectory) {
        // A linked checkout: its ".git" file names the administrative folder in the main repository.
        const std::optional<QString> marker = readMarker(fileManager, git);
        if (!marker)
            return;
        const QLatin1String prefix("gitdir:");
        const QString target = marker->startsWith(prefix) ? marker->mid(prefix.size()).trimmed() : *marker;
        if (!markerTargetExists(fileManager, target, repository))
            scan.emitIfContent(orphanedWorktree(repository, QStringLiteral("Orphaned Git Worktree Checkout: ") + name));
        return;
    }

    // A main repository: each administrative entry names the checkout it serves.
    const QString worktrees = PathText::appending(git, QStringLiteral("worktrees"));
    bool worktreesIsDirectory = false;
    if (!fileManager.fileExists(worktrees, &worktreesIsDirectory) || !worktreesIsDirectory)
        return;
    const DirectoryListing listing = fileManager.contentsOfDirectory(worktrees, false);
    if (!listing.ok())
        return;
    for (const DirectoryEntry& entry : listing.entries) {
        const QString entryPath = PathText::appending(worktrees, entry.name);
        const std::optional<QString> target =
            readMarker(fileManager, PathText::appending(entryPath, QStringLiteral("gitdir")));
        if (!target || markerTargetExists(fileManager, *target, entryPath))
            continue;
        scan.emitIfContent(orphanedWorktree(entryPath, QStringLiteral("Orphaned Git Worktree: ") + name +
                                                           QLatin1Char('/') + entry.name +
                                                           QStringLiteral(" (target deleted)")));
    }
}

} // namespace

void DeveloperTargets::scanPackageManagerCaches(TargetScan& scan) const
{
    scanNpm(scan, *m_fileManager, m_homeURL);

    scan.emitIfContent(cacheLocation(home(QStringLiteral(".bun/install/cache")),
                                     QStringLiteral("Bun Package Install Cache"), QStringLiteral("dev.bun.cache")));

    for (const char* relative : {".cache/pip", "Library/Caches/pip"})
        scan.emitIfContent(cacheLocation(home(QLatin1String(relative)),
                                         QStringLiteral("pip HTTP Response and Wheel Cache"),
                                         QStringLiteral("dev.pip.cache")));

    emitKnownFolders(scan, home(QStringLiteral(".cargo")),
                     {
                         {QLatin1String("registry/cache"), QLatin1String("Cargo Crate Archive Cache (.crate)")},
                         {QLatin1String("registry/src"), QLatin1String("Cargo Unpacked Crate Source Cache")},
                         {QLatin1String("git/db"), QLatin1String("Cargo Bare Git Repositories")},
                         {QLatin1String("git/checkouts"), QLatin1String("Cargo Git Checkout Cache")},
                         {QLatin1String(".package-cache"), QLatin1String("Cargo Package Cache")},
                     },
                     QStringLiteral("dev.cargo.cache"), QLatin1String("/.cargo/bin"));

    for (const char* relative : {".local/share/pnpm/store", "Library/pnpm/store", ".pnpm-store"})
        scan.emitIfContent(
            cacheLocation(home(QLatin1String(relative)),
                          QStringLiteral("pnpm Virtual Store (~/") + QLatin1String(relative) + QLatin1Char(')'),
                          QStringLiteral("dev.pnpm.store")));
}

void DeveloperTargets::scanHomebrewCaches(TargetScan& scan) const
{
    const QString ruleId = QStringLiteral("dev.homebrew.cache");
    const QString root = home(QStringLiteral("Library/Caches/Homebrew"));
    if (!m_fileManager->fileExists(root))
        return;
    bool sawKnownFolder = false;

    const QString downloads = PathText::appending(root, QStringLiteral("downloads"));
    if (m_fileManager->fileExists(downloads)) {
        sawKnownFolder = true;
        scanHomebrewDownloads(scan, *m_fileManager, downloads);
    }

    constexpr Folder folders[] = {
        {QLatin1String("Cask"), QLatin1String("Homebrew Cask Download Cache")},
        {QLatin1String("api"), QLatin1String("Homebrew API Metadata Cache")},
    };
    for (const Folder& folder : folders) {
        const QString path = PathText::appending(root, folder.relative);
        if (!m_fileManager->fileExists(path))
            continue;
        sawKnownFolder = true;
        scan.emitIfContent(cacheLocation(path, folder.description, ruleId));
    }

    if (!sawKnownFolder)
        scan.emitIfContent(cacheLocation(root, QStringLiteral("Homebrew Formula & Cask Cache"), ruleId));
}

void DeveloperTargets::scanGradleCaches(TargetScan& scan) const
{
    const QString root = home(QStringLiteral(".gradle"));
    if (!m_fileManager->fileExists(root))
        return;
    emitKnownFolders(scan, root,
                     {
                         {QLatin1String("caches"), QLatin1String("Gradle Dependency & Transform Cache")},
                         {QLatin1String("wrapper/dists"), QLatin1String("Gradle Wrapper Distributions")},
                         {QLatin1String("daemon"), QLatin1String("Gradle Daemon Execution Logs & State")},
                     },
                     QStringLiteral("dev.gradle.cache"), QLatin1String("gradle.properties"));
}

void DeveloperTargets::scanGitWorktrees(TargetScan& scan) const
{
    QStringList startFolders;
    for (const QString& root : m_projectRoots) {
        if (m_fileManager->fileExists(root))
            startFolders.append(root);
    }
    if (holdsGit(*m_fileManager, m_homeURL))
        startFolders.append(m_homeURL);

    QStringList repositories;
    QSet<QString> seen;
    for (const QString& folder : startFolders) {
        scan.checkCancellation();
        const QStringList found =
            holdsGit(*m_fileManager, folder) ? QStringList{folder} : discoverGitRepositories(*m_fileManager, folder);
        for (const QString& repository : found) {
            const QString standardized = PathText::removingDotComponents(repository);
            if (seen.contains(standardized))
                continue;
            seen.insert(standardized);
            repositories.append(repository);
        }
    }

    for (const QString& repository : repositories) {
        scan.checkCancellation();
        scanRepositoryWorktrees(scan, *m_fileManager, repository);
    }
}

} // namespace kestrow
