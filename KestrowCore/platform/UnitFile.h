#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kestrow {

class FileManager;

// A systemd unit file: "[Section]" headers and "Key=Value" lines, comments starting with "#"
// or ";", and lines continued by a trailing backslash (comment lines inside a continuation are
// skipped, as systemd does).
class UnitFile {
public:
    static constexpr qsizetype maxFileBytes = 1024 * 1024;

    // Nothing when the bytes are not UTF-8.
    [[nodiscard]] static std::optional<UnitFile> parse(const QByteArray& bytes);
    // The regular file at `path`, through a link too (units are often linked into place).
    [[nodiscard]] static std::optional<UnitFile> read(const FileManager& fileManager, const QString& path);

    // Every assignment of `key` in `section`, in order; an empty assignment drops the ones
    // before it, as it resets a list setting.
    [[nodiscard]] QStringList values(const QString& section, const QString& key) const;
    // The last assignment, which is the one that counts for a single-valued setting.
    [[nodiscard]] std::optional<QString> value(const QString& section, const QString& key) const;

    // The program of a command line such as ExecStart's: its prefixes ("-", "@", ":", "+",
    // "!") dropped, the first word with its quotes and backslash escapes resolved. Nothing
    // for an empty command or an open quote.
    [[nodiscard]] static std::optional<QString> commandProgram(const QString& command);

private:
    struct Assignment {
        QString section;
        QString key;
        QString value;
    };
    std::vector<Assignment> m_assignments;
};

} // namespace kestrow
