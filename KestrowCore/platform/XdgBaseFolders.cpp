#include "platform/XdgBaseFolders.h"

#include "platform/NativePath.h"
#include "platform/PathText.h"

#include <QtGlobal>

namespace kestrow {

namespace {

// The variable's folder if it is absolute, else `fallback`.
QString folderOf(const char* variable, const QString& fallback)
{
    const QByteArray value = qgetenv(variable);
    return value.startsWith('/') ? PathText::standardizing(NativePath::decode(value)) : fallback;
}

} // namespace

XdgBaseFolders XdgBaseFolders::below(const QString& home)
{
    return {.cacheHome = PathText::appending(home, QStringLiteral(".cache")),
            .configHome = PathText::appending(home, QStringLiteral(".config")),
            .dataHome = PathText::appending(home, QStringLiteral(".local/share")),
            .stateHome = PathText::appending(home, QStringLiteral(".local/state"))};
}

XdgBaseFolders XdgBaseFolders::forHome(const QString& home)
{
    XdgBaseFolders folders = below(home);
    const QByteArray processHome = qgetenv("HOME");
    if (!processHome.startsWith('/') ||
        PathText::standardizing(NativePath::decode(processHome)) != PathText::standardizing(home))
        return folders;
    folders.cacheHome = folderOf("XDG_CACHE_HOME", folders.cacheHome);
    folders.configHome = folderOf("XDG_CONFIG_HOME", folders.configHome);
    folders.dataHome = folderOf("XDG_DATA_HOME", folders.dataHome);
    folders.stateHome = folderOf("XDG_STATE_HOME", folders.stateHome);
    return folders;
}

} // namespace kestrow
