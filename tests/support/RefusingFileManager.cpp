#include "RefusingFileManager.h"

#include <cerrno>

namespace kestrow::test {

RefusingFileManager::RefusingFileManager(QStringList refusedFolders)
    : m_refused(std::move(refusedFolders))
{
}

bool RefusingFileManager::isRefused(const QString& path) const
{
    for (const QString& folder : m_refused)
        if (path == folder || path.startsWith(folder + QLatin1Char('/')))
            return true;
    return false;
}

bool RefusingFileManager::isBelowRefused(const QString& path) const
{
    for (const QString& folder : m_refused)
        if (path.startsWith(folder + QLatin1Char('/')))
            return true;
    return false;
}

std::optional<FileStatus> RefusingFileManager::status(const QString& path, bool followLinks) const
{
    return isBelowRefused(path) ? std::nullopt : FileManager::status(path, followLinks);
}

bool RefusingFileManager::fileExists(const QString& path, bool* isDirectory) const
{
    return !isBelowRefused(path) && FileManager::fileExists(path, isDirectory);
}

DirectoryListing RefusingFileManager::contentsOfDirectory(const QString& path, bool skipHidden) const
{
    if (isRefused(path))
        return {.entries = {}, .errorCode = EACCES};
    return FileManager::contentsOfDirectory(path, skipHidden);
}

void RefusingFileManager::walk(const QString& root, WalkSink& sink, std::stop_token stop,
                               const WalkOptions& options) const
{
    if (isRefused(root)) {
        sink.unreadableDirectory(root, EACCES);
        return;
    }
    bool holdsRefused = false;
    for (const QString& folder : m_refused)
        holdsRefused = holdsRefused || folder.startsWith(root + QLatin1Char('/'));
    if (!holdsRefused) {
        FileManager::walk(root, sink, std::move(stop), options);
        return;
    }
    // A slow walk, one level at a time, so that refused folders below the root are seen.
    for (const DirectoryEntry& entry : FileManager::contentsOfDirectory(root, false).entries) {
        const QString path = root + QLatin1Char('/') + entry.name;
        if (entry.isDirectory)
            walk(path, sink, stop, options);
        else if (const auto status = FileManager::status(path); status && status->isRegularFile())
            sink.regularFile(*status);
    }
}

} // namespace kestrow::test
