#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace kestrow {

class FileManager;

// Reads property lists, XML or binary, into Qt values: a dictionary becomes a QVariantMap, an
// array a QVariantList, a string a QString, a boolean a bool, an integer a qint64, a real a
// double, a date a QDateTime in UTC, data a QByteArray and a keyed-archiver uid a quint64. The
// one place that speaks to the property list library.
class PropertyListReader {
public:
    // Largest file `readFile` reads; launchd jobs and Info.plist files are far smaller.
    static constexpr qsizetype maxFileBytes = 16 * 1024 * 1024;

    // The top object, or nothing when the bytes are not a property list.
    [[nodiscard]] static std::optional<QVariant> parse(const QByteArray& bytes);
    // The top object of the regular file at `path` (a link is not followed), or nothing when it
    // cannot be read or is not a property list.
    [[nodiscard]] static std::optional<QVariant> readFile(const FileManager& fileManager, const QString& path);
    // The top object when it is a dictionary, else nothing.
    [[nodiscard]] static std::optional<QVariantMap> readDictionary(const FileManager& fileManager, const QString& path);
};

} // namespace kestrow
