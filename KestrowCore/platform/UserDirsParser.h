#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace kestrow {

// Reads the text of a desktop's user-dirs.dirs, where the user's own folders are named in the
// user's language: lines of the form XDG_DOCUMENTS_DIR="$HOME/Dokumente". A value is a shell
// word: double quotes group, a backslash takes the next character as it is, and "$HOME" (or
// "${HOME}") at its start stands for the home. Anything else that is not an absolute path, and
// every line that is not such an assignment (comments, blank lines), counts for nothing.
class UserDirsParser {
public:
    // Each assigned name without its "XDG_" and "_DIR" ("DOCUMENTS"), with its folder as an
    // absolute path in the lossless form of NativePath, dot components removed. A value of
    // "$HOME/" alone gives the home itself, which is how a folder is switched off. When a
    // name is assigned twice the last assignment counts, as the shell has it.
    [[nodiscard]] static QHash<QString, QString> parse(const QByteArray& text, const QString& homePath);
};

} // namespace kestrow
