#include "platform/UnitFile.h"

#include "platform/FileManager.h"

#include <QStringDecoder>

namespace kestrow {

namespace {

bool isComment(QStringView line)
{
    return line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char(';'));
}

// A line whose last backslash is not itself escaped goes on on the next line.
bool continues(QStringView line)
{
    qsizetype backslashes = 0;
    while (backslashes < line.size() && line[line.size() - 1 - backslashes] == QLatin1Char('\\'))
        ++backslashes;
    return backslashes % 2 == 1;
}

} // namespace

std::optional<UnitFile> UnitFile::parse(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;

    UnitFile file;
    QString section;
    QString pending; // a continued line so far
    bool continuing = false;
    const auto take = [&](QStringView line) {
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            section = line.sliced(1, line.size() - 2).toString();
            return;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0 || section.isEmpty())
            return;
        file.m_assignments.push_back(
            {section, line.first(equals).trimmed().toString(), line.sliced(equals + 1).trimmed().toString()});
    };
    for (const QStringView raw : QStringView(text).split(QLatin1Char('\n'))) {
        const QStringView line = raw.trimmed();
        if (isComment(line) || (line.isEmpty() && !continuing))
            continue;
        if (continues(line)) {
            pending += line.chopped(1);
            pending += QLatin1Char(' ');
            continuing = true;
            continue;
        }
        if (continuing) {
            pending += line;
            take(QStringView(pending).trimmed());
            pending.clear();
            continuing = false;
        } else {
            take(line);
        }
    }
    if (continuing)
        take(QStringView(pending).trimmed());
    return file;
}

std::optional<UnitFile> UnitFile::read(const FileManager& fileManager, const QString& path)
{
    const FileManager::RegularFileRead read = fileManager.readRegularFile(path, maxFileBytes, true);
    if (read.errorCode != 0)
        return std::nullopt;
    return parse(read.bytes);
}

QStringList UnitFile::values(const QString& section, const QString& key) const
{
    QStringList values;
    for (const Assignment& assignment : m_assignments) {
        if (assignment.section != section || assignment.key != key)
            continue;
        if (assignment.value.isEmpty())
            values.clear();
        else
            values.append(assignment.value);
    }
    return values;
}

std::optional<QString> UnitFile::value(const QString& section, const QString& key) const
{
    for (auto assignment = m_assignments.rbegin(); assignment != m_assignments.rend(); ++assignment)
        if (assignment->section == section && assignment->key == key)
            return assignment->value;
    return std::nullopt;
}

std::optional<QString> UnitFile::commandProgram(const QString& command)
{
    qsizetype index = 0;
    while (index < command.size() && QStringView(u"-@:+!").contains(command[index]))
        ++index;
    while (index < command.size() && command[index].isSpace())
        ++index;
    QString program;
    QChar quote;
    for (; index < command.size(); ++index) {
        const QChar c = command[index];
        if (c == QLatin1Char('\\') && index + 1 < command.size()) {
            program += command[++index];
        } else if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            else
                program += c;
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            quote = c;
        } else if (c.isSpace()) {
            break;
        } else {
            program += c;
        }
    }
    if (!quote.isNull() || program.isEmpty())
        return std::nullopt;
    return program;
}

} // namespace kestrow
