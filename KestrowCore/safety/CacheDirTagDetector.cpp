#include "safety/CacheDirTagDetector.h"

#include "platform/AtomicFileWriter.h"
#include "platform/PathText.h"
#include "safety/CacheDirTagWriteError.h"

#include <QStringDecoder>

namespace kestrow {

namespace {

// The longest stretch of a tag that is read: the signature and a comment fit well inside.
constexpr qsizetype readLimit = 512;

bool isNewline(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029;
}

// Blanks within a line: tab and the space separators.
bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space;
}

template <typename Predicate> QStringView trimmed(QStringView text, Predicate drop)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && drop(text.at(start)))
        ++start;
    while (end > start && drop(text.at(end - 1)))
        --end;
    return text.mid(start, end - start);
}

// The tag's first bytes as UTF-8; nothing when they could not be read, are empty, or are not
// valid UTF-8 (a character cut in two by the limit included).
std::optional<QString> readText(const FileManager::RegularFileRead& read)
{
    const QByteArray& bytes = read.bytes;
    if (read.errorCode != 0 || bytes.isEmpty())
        return std::nullopt;
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace

std::optional<CacheDirTagInfo> CacheDirTagDetector::detectTag(const QString& directory)
{
    return detectTag(directory, FileManager());
}

std::optional<CacheDirTagInfo> CacheDirTagDetector::detectTag(const QString& directory, const FileManager& fileManager)
{
    const QString tagPath = PathText::appending(directory, tagFileName);
    const FileManager::RegularFileRead read = fileManager.readRegularFile(tagPath, readLimit);
    if (!read.opened)
        return std::nullopt;
    CacheDirTagInfo info{.tagFileURL = tagPath, .directoryURL = directory};
    const std::optional<QString> text = readText(read);
    if (!text)
        return info;

    QList<QStringView> lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text->size(); ++i) {
        if (i == text->size() || isNewline(text->at(i))) {
            lines.append(QStringView(*text).mid(start, i - start));
            start = i + 1;
        }
    }
    const auto blankOrNewline = [](QChar c) { return isBlank(c) || isNewline(c); };
    if (!trimmed(lines.first(), blankOrNewline).startsWith(signatureHeader))
        return info;
    info.isValid = true;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QStringView line = trimmed(lines.at(i), isBlank);
        if (line.startsWith(QLatin1Char('#'))) {
            info.applicationComment = trimmed(line.mid(1), isBlank).toString();
            break;
        }
    }
    return info;
}

bool CacheDirTagDetector::isCacheDirectory(const QString& directory)
{
    const std::optional<CacheDirTagInfo> tag = detectTag(directory);
    return tag && tag->isValid;
}

void CacheDirTagDetector::writeTag(const QString& directory, const std::optional<QString>& applicationName)
{
    QString text = signatureHeader + QLatin1Char('\n');
    if (applicationName) {
        text += QStringLiteral("# This file is a cache directory tag created by ") + *applicationName +
                QStringLiteral(".\n");
        text += QStringLiteral("# For information about cache directory tags, see:\n");
        text += QStringLiteral("#   https://bford.info/cachedir/\n");
    }
    const QString tagPath = PathText::appending(directory, tagFileName);
    const FileOperationResult written = AtomicFileWriter().write(tagPath, text.toUtf8(), false);
    if (!written.succeeded)
        throw CacheDirTagWriteError(tagPath, written.errorDescription);
}

} // namespace kestrow
