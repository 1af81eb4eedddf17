#pragma once

#include "platform/FileStatus.h"
#include "platform/TrashLocation.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace kestrow {

// One item in a freedesktop.org Trash folder: files/NAME and its record info/NAME.trashinfo.
struct TrashEntry {
    TrashLocation::Folder folder;       // the Trash folder that holds it
    QByteArray name;                    // NAME, native bytes
    QString originalPath;               // where it was taken from, absolute
    std::optional<QDateTime> deletedAt; // local time, to the second, as the record says
    FileStatus status;                  // of files/NAME itself (a link is the link), when it was listed

    // folder/files/NAME and folder/info/NAME.trashinfo.
    [[nodiscard]] QString filePath() const;
    [[nodiscard]] QString infoPath() const;
    [[nodiscard]] QByteArray recordName() const { return name + ".trashinfo"; }
};

} // namespace kestrow
