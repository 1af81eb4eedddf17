#include "system/ProgramLocator.h"

#include "platform/PathText.h"

namespace kestrow {

ProgramLocator::ProgramLocator(const FileManager& fileManager, QStringList searchPath)
    : m_fileManager(fileManager)
    , m_searchPath(std::move(searchPath))
{
}

bool ProgramLocator::exists(const QString& program) const
{
    bool isDirectory = false;
    const auto isFile = [&](const QString& path) {
        return m_fileManager.fileExists(path, &isDirectory) && !isDirectory;
    };
    if (program.contains(QLatin1Char('/')))
        return isFile(program);
    return std::any_of(m_searchPath.begin(), m_searchPath.end(),
                       [&](const QString& folder) { return isFile(PathText::appending(folder, program)); });
}

} // namespace kestrow
