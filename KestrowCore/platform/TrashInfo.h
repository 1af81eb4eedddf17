#pragma once

#include <QByteArray>
#include <QDateTime>

#include <ctime>
#include <optional>

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

    // What a record says: the path as written, its %XX escapes taken back to bytes, and the
    // deletion date (local time, to the second) when it has a valid one.
    struct Fields {
        QByteArray originalPath;
        std::optional<QDateTime> deletedAt;
    };
    // Nothing when `content` is not a record: no "[Trash Info]" group or no Path= in it.
    [[nodiscard]] static std::optional<Fields> read(const QByteArray& content);
};

} // namespace kestrow
