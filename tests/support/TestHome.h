#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>

namespace kestrow::test {

// A throw-away home for one test. It also points the process's HOME and its XDG data, config
// cache and state locations inside itself, so that nothing a test does reaches the real home, Trash
// or preferences: the platform Trash files an item in the home Trash only when the item lies
// on the same file system as HOME, so HOME must be here too. Paths given to the helpers are
// relative to the home.
class TestHome {
public:
    TestHome();
    ~TestHome();
    TestHome(const TestHome&) = delete;
    TestHome& operator=(const TestHome&) = delete;

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] QString path(const QString& relative) const;
    // Where items this test moves to the Trash go, and their .trashinfo files.
    [[nodiscard]] QString trashFilesFolder() const { return path(QStringLiteral(".local/share/Trash/files")); }
    [[nodiscard]] QString trashInfoFolder() const { return path(QStringLiteral(".local/share/Trash/info")); }

    // Creates the folder and its parents; returns its absolute path.
    QString makeDirectory(const QString& relative) const;
    // Writes `size` bytes (parents created); returns its absolute path.
    QString writeFile(const QString& relative, std::int64_t size) const;
    QString writeFile(const QString& relative, const QByteArray& content) const;
    // A file of `size` bytes whose blocks are reserved without being written: as heavy on the
    // disk as written data, made at once (parents created); returns its absolute path.
    QString allocateFile(const QString& relative, std::int64_t size) const;
    QString makeSymbolicLink(const QString& relative, const QString& target) const;
    QString makeHardLink(const QString& relative, const QString& existingRelative) const;

    // True when permission bits refuse nothing for this process (root, as in CI).
    [[nodiscard]] static bool permissionsAreIgnored();

private:
    QTemporaryDir m_directory;
    QString m_path;
    QByteArray m_savedHome;
    QByteArray m_savedData;
    QByteArray m_savedConfig;
    QByteArray m_savedCache;
    QByteArray m_savedState;
};

} // namespace kestrow::test
