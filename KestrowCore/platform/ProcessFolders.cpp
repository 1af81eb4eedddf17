#include "platform/ProcessFolders.h"

#include "platform/NativePath.h"

#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace kestrow {

QString ProcessFolders::home()
{
    const char* home = std::getenv("HOME");
    return home && home[0] ? NativePath::decode(home) : QStringLiteral("/");
}

std::optional<QString> ProcessFolders::workingFolder()
{
    const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
    if (!folder)
        return std::nullopt;
    return NativePath::decode(folder.get());
}

namespace {

// Absolute folders of a colon-separated list; empty and relative entries are dropped, since
// they would depend on the working folder.
QStringList absoluteFolders(const char* variable, const char* fallback)
{
    const char* value = std::getenv(variable);
    const QString list = NativePath::decode(value && value[0] ? value : fallback);
    QStringList folders;
    for (const QString& folder : list.split(QLatin1Char(':'), Qt::SkipEmptyParts))
        if (folder.startsWith(QLatin1Char('/')))
            folders.append(folder);
    return folders;
}

} // namespace

QStringList ProcessFolders::executableSearchPath()
{
    return absoluteFolders("PATH", "/usr/local/bin:/usr/bin:/bin");
}

QStringList ProcessFolders::configDirectories()
{
    return absoluteFolders("XDG_CONFIG_DIRS", "/etc/xdg");
}

QStringList ProcessFolders::dataDirectories()
{
    return absoluteFolders("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

} // namespace kestrow
