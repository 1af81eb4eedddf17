#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <vector>

namespace kestrow {

class FileManager;

// A file in the freedesktop.org Desktop Entry format (application entries, autostart entries
// and their kin): groups of keys, comments and blank lines. The file's bytes are kept with the
// index, so that a key can be set or removed while every other byte stays as it was.
class DesktopEntryFile {
public:
    // Far beyond any entry written by hand or by a package.
    static constexpr qsizetype maxFileBytes = 1024 * 1024;

    // Nothing when the bytes are not UTF-8. Lines that are neither a group header, a comment,
    // blank nor "Key=Value" (and keys before the first group) are passed over, as desktop
    // environments do.
    [[nodiscard]] static std::optional<DesktopEntryFile> parse(const QByteArray& bytes);
    // The regular file at `path`, through a link too (entries are often linked into place);
    // nothing when it cannot be read or parsed.
    [[nodiscard]] static std::optional<DesktopEntryFile> read(const FileManager& fileManager, const QString& path);

    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }
    // In the order of their first header; a group that appears twice is one group.
    [[nodiscard]] QStringList groups() const;
    [[nodiscard]] bool hasGroup(const QString& group) const { return findGroup(group) != nullptr; }
    // Keys as written, localised ones ("Name[de]") included, each once, in order.
    [[nodiscard]] QStringList keys(const QString& group) const;

    // The value as written after "=" (leading blanks dropped). Of a key given twice, the last.
    [[nodiscard]] std::optional<QString> rawValue(const QString& group, const QString& key) const;
    // The value with its escapes (\s \n \t \r \\) resolved.
    [[nodiscard]] std::optional<QString> string(const QString& group, const QString& key) const;
    // The best localised form for a POSIX locale name ("de_DE.UTF-8@euro"): key[lang_COUNTRY@MODIFIER],
    // key[lang_COUNTRY], key[lang@MODIFIER], key[lang], then the key itself.
    [[nodiscard]] std::optional<QString> localeString(const QString& group, const QString& key,
                                                      const QString& locale) const;
    // "true" or "false" (and the old "1" or "0"); nothing for any other text.
    [[nodiscard]] std::optional<bool> boolean(const QString& group, const QString& key) const;
    // Items separated by ";" ("\;" stands for a semicolon inside one), escapes resolved; a
    // closing ";" ends the list rather than opening an empty item.
    [[nodiscard]] std::optional<QStringList> stringList(const QString& group, const QString& key) const;

    // The file's bytes with `key` set to `rawValue`: its last line rewritten in place, or, when
    // the group lacks the key, one line added after the group's last key (a missing group is
    // added at the end). Nothing else changes.
    [[nodiscard]] QByteArray withValue(const QString& group, const QString& key, const QString& rawValue) const;
    // The file's bytes without the lines of `key` in `group`; removing a line that `withValue`
    // added gives back the bytes from before it.
    [[nodiscard]] QByteArray withoutKey(const QString& group, const QString& key) const;

    [[nodiscard]] static QString unescape(QStringView raw);
    // The arguments of an Exec value (escapes already resolved): separated by blanks, with
    // double-quoted arguments in which \" \` \$ \\ stand for the character. Nothing when a
    // quote is left open.
    [[nodiscard]] static std::optional<QStringList> execArguments(const QString& exec);

private:
    struct Line {
        qsizetype start = 0;
        qsizetype end = 0;           // before the terminator
        qsizetype terminatorEnd = 0; // after "\n" or "\r\n"; equal to `end` on a last line without one
    };
    struct Entry {
        QString key; // with its locale suffix
        QString value;
        int line = 0;
    };
    struct Group {
        QString name;
        std::vector<Entry> entries;
        int lastLine = 0; // its header, or its last entry
    };

    [[nodiscard]] const Group* findGroup(const QString& name) const;
    [[nodiscard]] const Entry* findEntry(const QString& group, const QString& key) const;

    QByteArray m_bytes;
    std::vector<Line> m_lines;
    std::vector<Group> m_groups;
};

} // namespace kestrow
