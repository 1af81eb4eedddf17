#pragma once

#include <QByteArray>

#include <ctime>

namespace kestrow {

// The record the freedesktop.org Trash keeps for each trashed item, info/NAME.trashinfo:
// where the item was and when it was trashed.
class TrashInfo {
public:
    // The whole file. `originalPath` is the item's path in bytes: absolute, or relative to
    // the top folder of the file system whose Trash holds the item. The date is local time.
    [[nodiscard]] static QByteArray content(const QByteArray& originalPath, std::time_t deletedAt);

    // Every byte but letters, digits, "-._~" and "/" as %XX, so that any name (a line feed,
    // a "%", bytes that are not UTF-8) reads back as the very bytes.
    [[nodiscard]] static QByteArray encodePath(const QByteArray& path);
};

} // namespace kestrow
