#include "platform/DesktopEntryFile.h"

#include "platform/FileManager.h"

#include <QStringDecoder>

namespace kestrow {

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

// Key names are ASCII letters, digits and "-", optionally followed by "[locale]".
bool isValidKey(QStringView key)
{
    qsizetype nameEnd = key.indexOf(QLatin1Char('['));
    if (nameEnd >= 0 && (!key.endsWith(QLatin1Char(']')) || nameEnd + 2 == key.size()))
        return false;
    if (nameEnd < 0)
        nameEnd = key.size();
    if (nameEnd == 0)
        return false;
    for (const QChar c : key.first(nameEnd))
        if (!(c.isLetterOrNumber() && c.unicode() < 0x80) && c != QLatin1Char('-'))
            return false;
    return true;
}

} // namespace

std::optional<DesktopEntryFile> DesktopEntryFile::parse(const QByteArray& bytes)
{
    // The whole file is decoded once only to refuse one that is not UTF-8; lines are decoded
    // again one by one below, beside their byte offsets.
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString validated = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;

    DesktopEntryFile file;
    file.m_bytes = bytes;
    Group* group = nullptr;
    for (qsizetype start = 0; start < bytes.size();) {
        const qsizetype newline = bytes.indexOf('\n', start);
        Line line{start, newline < 0 ? bytes.size() : newline, newline < 0 ? bytes.size() : newline + 1};
        if (line.end > line.start && bytes[line.end - 1] == '\r')
            --line.end;
        start = line.terminatorEnd;
        const int index = static_cast<int>(file.m_lines.size());
        file.m_lines.push_back(line);

        const QString content = QString::fromUtf8(bytes.mid(line.start, line.end - line.start));
        const QStringView trimmed = QStringView(content).trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
            const QString name = trimmed.sliced(1, trimmed.size() - 2).toString();
            const auto existing = std::find_if(file.m_groups.begin(), file.m_groups.end(),
                                               [&](const Group& known) { return known.name == name; });
            group = existing != file.m_groups.end() ? &*existing : &file.m_groups.emplace_back(Group{name, {}, index});
            group->lastLine = index;
            continue;
        }
        const qsizetype equals = content.indexOf(QLatin1Char('='));
        if (!group || equals < 0)
            continue;
        const QString key = QStringView(content).first(equals).trimmed().toString();
        if (!isValidKey(key))
            continue;
        qsizetype valueStart = equals + 1;
        while (valueStart < content.size() && isBlank(content[valueStart]))
            ++valueStart;
        group->entries.push_back({key, content.sliced(valueStart), index});
        group->lastLine = index;
    }
    return file;
}

std::optional<DesktopEntryFile> DesktopEntryFile::read(const FileManager& fileManager, const QString& path)
{
    const FileManager::RegularFileRead read = fileManager.readRegularFile(path, maxFileBytes, true);
    if (read.errorCode != 0)
        return std::nullopt;
    return parse(read.bytes);
}

QStringList DesktopEntryFile::groups() const
{
    QStringList names;
    for (const Group& group : m_groups)
        names.append(group.name);
    return names;
}

QStringList DesktopEntryFile::keys(const QString& group) const
{
    QStringList keys;
    if (const Group* found = findGroup(group))
        for (const Entry& entry : found->entries)
            if (!keys.contains(entry.key))
                keys.append(entry.key);
    return keys;
}

std::optional<QString> DesktopEntryFile::rawValue(const QString& group, const QString& key) const
{
    const Entry* entry = findEntry(group, key);
    if (!entry)
        return std::nullopt;
    return entry->value;
}

std::optional<QString> DesktopEntryFile::string(const QString& group, const QString& key) const
{
    const Entry* entry = findEntry(group, key);
    if (!entry)
        return std::nullopt;
    return unescape(entry->value);
}

std::optional<QString> DesktopEntryFile::localeString(const QString& group, const QString& key,
                                                      const QString& locale) const
{
    // lang_COUNTRY.ENCODING@MODIFIER; the encoding plays no part in the match.
    QString name = locale;
    QString modifier;
    if (const qsizetype at = name.indexOf(QLatin1Char('@')); at >= 0) {
        modifier = name.sliced(at + 1);
        name.truncate(at);
    }
    if (const qsizetype dot = name.indexOf(QLatin1Char('.')); dot >= 0)
        name.truncate(dot);
    QString language = name;
    QString country;
    if (const qsizetype underscore = name.indexOf(QLatin1Char('_')); underscore >= 0) {
        country = name.sliced(underscore + 1);
        language.truncate(underscore);
    }

    QStringList candidates;
    const auto withModifier = [&](const QString& base) -> QString { return base + QLatin1Char('@') + modifier; };
    const QString languageCountry = language + QLatin1Char('_') + country;
    if (!country.isEmpty() && !modifier.isEmpty())
        candidates.append(withModifier(languageCountry));
    if (!country.isEmpty())
        candidates.append(languageCountry);
    if (!modifier.isEmpty())
        candidates.append(withModifier(language));
    if (!language.isEmpty())
        candidates.append(language);
    for (const QString& candidate : candidates)
        if (std::optional<QString> value = string(group, key + QLatin1Char('[') + candidate + QLatin1Char(']')))
            return value;
    return string(group, key);
}

std::optional<bool> DesktopEntryFile::boolean(const QString& group, const QString& key) const
{
    const std::optional<QString> value = rawValue(group, key);
    if (value == QLatin1String("true") || value == QLatin1String("1"))
        return true;
    if (value == QLatin1String("false") || value == QLatin1String("0"))
        return false;
    return std::nullopt;
}

std::optional<QStringList> DesktopEntryFile::stringList(const QString& group, const QString& key) const
{
    const std::optional<QString> value = rawValue(group, key);
    if (!value)
        return std::nullopt;
    QStringList items;
    QString item;
    for (qsizetype index = 0; index < value->size(); ++index) {
        const QChar c = value->at(index);
        if (c == QLatin1Char('\\') && index + 1 < value->size()) {
            const QChar next = value->at(++index);
            // "\;" is the list's own escape; the others are resolved with the item.
            if (next == QLatin1Char(';'))
                item += next;
            else
                item += c + QString(next);
        } else if (c == QLatin1Char(';')) {
            items.append(unescape(item));
            item.clear();
        } else {
            item += c;
        }
    }
    if (!item.isEmpty())
        items.append(unescape(item));
    return items;
}

QByteArray DesktopEntryFile::withValue(const QString& group, const QString& key, const QString& rawValue) const
{
    const QByteArray assignment = key.toUtf8() + '=' + rawValue.toUtf8();
    QByteArray bytes = m_bytes;
    if (const Entry* entry = findEntry(group, key)) {
        const Line& line = m_lines[static_cast<size_t>(entry->line)];
        return bytes.replace(line.start, line.end - line.start, assignment);
    }
    const Group* found = findGroup(group);
    if (!found) {
        if (!bytes.isEmpty() && !bytes.endsWith('\n'))
            bytes += '\n';
        return bytes + '[' + group.toUtf8() + "]\n" + assignment + '\n';
    }
    const Line& after = m_lines[static_cast<size_t>(found->lastLine)];
    if (after.terminatorEnd == after.end) // the file's last line, without a newline
        return bytes.insert(after.end, '\n' + assignment);
    const QByteArray terminator = m_bytes.mid(after.end, after.terminatorEnd - after.end);
    return bytes.insert(after.terminatorEnd, assignment + terminator);
}

QByteArray DesktopEntryFile::withoutKey(const QString& group, const QString& key) const
{
    QByteArray bytes = m_bytes;
    const Group* found = findGroup(group);
    if (!found)
        return bytes;
    // From the last line up, so that the offsets of the lines before stay valid.
    for (auto entry = found->entries.rbegin(); entry != found->entries.rend(); ++entry) {
        if (entry->key != key)
            continue;
        const Line& line = m_lines[static_cast<size_t>(entry->line)];
        qsizetype from = line.start;
        // A last line without a newline takes the newline before it along.
        if (line.terminatorEnd == line.end && entry->line > 0)
            from = m_lines[static_cast<size_t>(entry->line - 1)].end;
        bytes.remove(from, line.terminatorEnd - from);
    }
    return bytes;
}

QString DesktopEntryFile::unescape(QStringView raw)
{
    QString text;
    text.reserve(raw.size());
    for (qsizetype index = 0; index < raw.size(); ++index) {
        const QChar c = raw[index];
        if (c != QLatin1Char('\\') || index + 1 == raw.size()) {
            text += c;
            continue;
        }
        switch (raw[++index].unicode()) {
        case 's':
            text += QLatin1Char(' ');
            break;
        case 'n':
            text += QLatin1Char('\n');
            break;
        case 't':
            text += QLatin1Char('\t');
            break;
        case 'r':
            text += QLatin1Char('\r');
            break;
        case '\\':
            text += QLatin1Char('\\');
            break;
        default: // not an escape of this format: kept as written
            text += c;
            text += raw[index];
        }
    }
    return text;
}

std::optional<QStringList> DesktopEntryFile::execArguments(const QString& exec)
{
    QStringList arguments;
    QString argument;
    bool inArgument = false;
    bool quoted = false;
    for (qsizetype index = 0; index < exec.size(); ++index) {
        const QChar c = exec[index];
        if (quoted) {
            if (c == QLatin1Char('"')) {
                quoted = false;
            } else if (c == QLatin1Char('\\') && index + 1 < exec.size() &&
                       QStringView(u"\"`$\\").contains(exec[index + 1])) {
                argument += exec[++index];
            } else {
                argument += c;
            }
        } else if (isBlank(c)) {
            if (inArgument)
                arguments.append(argument);
            argument.clear();
            inArgument = false;
        } else {
            inArgument = true;
            if (c == QLatin1Char('"'))
                quoted = true;
            else
                argument += c;
        }
    }
    if (quoted)
        return std::nullopt;
    if (inArgument)
        arguments.append(argument);
    return arguments;
}

const DesktopEntryFile::Group* DesktopEntryFile::findGroup(const QString& name) const
{
    for (const Group& group : m_groups)
        if (group.name == name)
            return &group;
    return nullptr;
}

const DesktopEntryFile::Entry* DesktopEntryFile::findEntry(const QString& group, const QString& key) const
{
    const Group* found = findGroup(group);
    if (!found)
        return nullptr;
    for (auto entry = found->entries.rbegin(); entry != found->entries.rend(); ++entry)
        if (entry->key == key)
            return &*entry;
    return nullptr;
}

} // namespace kestrow
