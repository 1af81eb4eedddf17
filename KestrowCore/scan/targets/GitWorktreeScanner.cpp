#include "scan/targets/GitWorktreeScanner.h"

#include "platform/PathText.h"

#include <QSet>
#include <QStringDecoder>

#include <algorithm>

namespace kestrow {

namespace {

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
    // A marker is one line; a FIFO or device put in its place is never opened for reading.
    constexpr qsizetype markerLimit = 64 * 1024;
    const FileManager::RegularFileRead read = fileManager.readRegularFile(path, markerLimit, true);
    if (read.errorCode != 0)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(read.bytes);
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
    return {.path = path,
            .category = StorageCategory::developerCache,
            .description = description,
            .defaultRuleId = QStringLiteral("dev.git.orphaned_worktrees"),
            .isOrphaned = true};
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

void GitWorktreeScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    QStringList startFolders;
    for (const QString& root : context.projectRoots) {
        if (context.fileManager->fileExists(root))
            startFolders.append(root);
    }
    if (holdsGit(*context.fileManager, context.homeURL))
        startFolders.append(context.homeURL);

    QStringList repositories;
    QSet<QString> seen;
    for (const QString& folder : startFolders) {
        scan.checkCancellation();
        const QStringList found = holdsGit(*context.fileManager, folder)
                                      ? QStringList{folder}
                                      : discoverGitRepositories(*context.fileManager, folder);
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
        scanRepositoryWorktrees(scan, *context.fileManager, repository);
    }
}

} // namespace kestrow
