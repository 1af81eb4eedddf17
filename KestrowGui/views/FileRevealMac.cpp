#include "views/FileReveal.h"

#include <QProcess>

namespace kestrow {

void FileReveal::show(const QString& path)
{
    QProcess::startDetached(QStringLiteral("/usr/bin/open"), {QStringLiteral("-R"), path});
}

} // namespace kestrow
