#include "platform/UserDirsParser.h"

#include "platform/NativePath.h"
#include "platform/PathText.h"

#include <QByteArrayView>
#include <QList>

#include <optional>

namespace kestrow {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

qsizetype skipBlanks(QByteArrayView line, qsizetype at)
{
    while (at < line.size() && isBlank(line.at(at)))
        ++at;
    return at;
}

// The length of a "$HOME" or "${HOME}" that opens the value at `at` (after an opening quote,
// if any) and is followed by a slash, a quote, a blank or the end; 0 when there is none.
qsizetype homeReferenceLength(QByteArrayView line, qsizetype at)
{
    for (const QByteArrayView reference : {QByteArrayView("${HOME}"), QByteArrayView("$HOME")}) {
        if (!line.sliced(at).startsWith(reference))
            continue;
        const qsizetype end = at + reference.size();
        if (end == line.size() || line.at(end) == '/' || line.at(end) == '"' || isBlank(line.at(end)))
            return reference.size();
    }
    return 0;
}

// The value's bytes from `at` up to the first blank outside quotes, quotes dropped and
// backslashes taking the next byte; nothing when a quote is left open. A quote that opened
// before `at` is passed in `quoted`.
std::optional<QByteArray> shellWord(QByteArrayView line, qsizetype at, bool quoted)
{
    QByteArray word;
    for (; at < line.size(); ++at) {
        const char c = line.at(at);
        if (c == '\\' && at + 1 < line.size())
            word += line.at(++at);
        else if (c == '"')
            quoted = !quoted;
        else if (!quoted && isBlank(c))
            break;
        else
            word += c;
    }
    if (quoted)
        return std::nullopt;
    return word;
}

} // namespace

QHash<QString, QString> UserDirsParser::parse(const QByteArray& text, const QString& homePath)
{
    QHash<QString, QString> folders;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray& rawLine : lines) {
        const QByteArray line = rawLine.trimmed();
        const qsizetype equals = line.indexOf('=');
        if (!line.startsWith("XDG_") || equals < 0)
            continue;
        const QByteArray name = line.left(equals).trimmed();
        if (!name.endsWith("_DIR") || name.size() <= 8)
            continue;

        qsizetype at = skipBlanks(line, equals + 1);
        const bool opensQuoted = at < line.size() && line.at(at) == '"';
        if (opensQuoted)
            ++at;
        const qsizetype home = homeReferenceLength(line, at);
        const std::optional<QByteArray> word = shellWord(line, at + home, opensQuoted);
        if (!word)
            continue;
        QString folder;
        if (home > 0)
            folder = PathText::appending(homePath, NativePath::decode(*word));
        else if (word->startsWith('/'))
            folder = NativePath::decode(*word);
        else
            continue;
        folders.insert(QString::fromLatin1(name.sliced(4, name.size() - 8)), PathText::removingDotComponents(folder));
    }
    return folders;
}

} // namespace kestrow
