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

} // namespace kestrow
