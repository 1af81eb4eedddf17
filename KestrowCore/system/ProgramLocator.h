#pragma once

#include "platform/FileManager.h"

#include <QString>
#include <QStringList>

namespace kestrow {

// Finds the program a launch item would start, as its starter would: a name with a slash as
// it stands, a bare name in the folders of the search path.
class ProgramLocator {
public:
    ProgramLocator(const FileManager& fileManager, QStringList searchPath);

    [[nodiscard]] bool exists(const QString& program) const;

private:
    const FileManager& m_fileManager;
    QStringList m_searchPath;
};

} // namespace kestrow
