#include "platform/PathText.h"

#include "platform/LinkResolver.h"
#include "platform/NativePath.h"
#include "platform/ProcessFolders.h"

#include <QDir>
#include <QUrl>

#include <array>
#include <string_view>

namespace kestrow {

namespace {

// An absolute path whose components are all names: nothing to remove. Most paths are.
bool isPlainAbsolute(QStringView path)
{
    if (!path.startsWith(QLatin1Char('/')))
        return false;
    if (path.size() == 1)
        return true;
    for (qsizetype start = 1; start <= path.size();) {
        qsizetype end = path.indexOf(QLatin1Char('/'), start);
        if (end < 0)
            end = path.size();
        const QStringView component = path.mid(start, end - start);
        if (component.isEmpty() || component == QLatin1String(".") || component == QLatin1String(".."))
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace

QString PathText::removingDotComponents(const QString& path)
{
    if (path.isEmpty() || isPlainAbsolute(path))
        return path;
    const bool absolute = path.startsWith(QLatin1Char('/'));
    QStringList kept;
    for (const QString& component : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (component == QLatin1String("."))
            continue;
        if (component == QLatin1String("..")) {
            if (!kept.isEmpty() && kept.last() != QLatin1String(".."))
                kept.removeLast();
            else if (!absolute)
                kept.append(component);
            continue;
        }
        kept.append(component);
    }
    const QString joined = kept.join(QLatin1Char('/'));
    if (absolute)
        return QLatin1Char('/') + joined;
    return joined.isEmpty() ? QStringLiteral(".") : joined;
}

QString PathText::standardizing(const QString& path)
{
    if (path.isEmpty())
        return path;
    if (path.startsWith(QLatin1Char('/'))) {
        static const LinkResolver onDisk;
        return onDisk.droppingPrivatePrefix(removingDotComponents(path));
    }
    QStringList kept = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    kept.removeAll(QStringLiteral("."));
    return kept.join(QLatin1Char('/'));
}

QString PathText::standardizedLocation(const QString& path)
{
    return removingDotComponents(absolute(path));
}

QString PathText::absolute(const QString& path)
{
    if (path.startsWith(QLatin1Char('/')))
        return path;
    // A working folder that cannot be read leaves the text relative, as the system would fail it.
    const std::optional<QString> folder = ProcessFolders::workingFolder();
    return folder ? appending(*folder, path) : path;
}

QString PathText::expandingTilde(const QString& path, const QString& home)
{
    if (path == QLatin1String("~"))
        return home;
    if (path.startsWith(QLatin1String("~/")))
        return appending(home, path.mid(2));
    return path;
}

QString PathText::appending(const QString& base, const QString& component)
{
    if (component.isEmpty())
        return base;
    QString head = base;
    while (head.size() > 1 && head.endsWith(QLatin1Char('/')))
        head.chop(1);
    qsizetype start = 0;
    while (start < component.size() && component.at(start) == QLatin1Char('/'))
        ++start;
    if (head == QLatin1String("/"))
        return head + component.mid(start);
    return head + QLatin1Char('/') + component.mid(start);
}

QString PathText::lastComponent(const QString& path)
{
    QString trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/')))
        trimmed.chop(1);
    const qsizetype slash = trimmed.lastIndexOf(QLatin1Char('/'));
    if (slash < 0 || trimmed == QLatin1String("/"))
        return trimmed;
    return trimmed.mid(slash + 1);
}

QString PathText::pathExtension(const QString& path)
{
    const QString name = lastComponent(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot + 1) : QString();
}

QString PathText::parent(const QString& path)
{
    QString trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/')))
        trimmed.chop(1);
    const qsizetype slash = trimmed.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QStringLiteral(".");
    if (slash == 0)
        return QStringLiteral("/");
    return trimmed.left(slash);
}

namespace {

// What a file URL's path keeps as it stands: unreserved characters, sub-delimiters, ":", "@",
// "/", "[" and "]". Everything else, every byte above 0x7F included, is percent-encoded.
constexpr std::array<bool, 256> keptLiterallyInURL = [] {
    std::array<bool, 256> kept{};
    for (const char c : std::string_view("-._~!$&'()*+,;=:@/[]"))
        kept[static_cast<unsigned char>(c)] = true;
    for (int c = '0'; c <= '9'; ++c)
        kept[c] = true;
    for (int c = 'a'; c <= 'z'; ++c)
        kept[c] = kept[c - 'a' + 'A'] = true;
    return kept;
}();

} // namespace

QString PathText::fileURLString(const QString& path)
{
    if (path.isEmpty())
        return {};
    // The native bytes, each one outside the set a file URL's path keeps literally written as
    // "%HH". Valid UTF-8 comes out as QUrl writes it; a raw byte comes out as itself, not as
    // the UTF-8 of the character that stands for it.
    static constexpr char digits[] = "0123456789ABCDEF";
    const QByteArray native = NativePath::encode(path);
    QByteArray url = native.startsWith('/') ? QByteArray("file://") : QByteArray("file:");
    url.reserve(url.size() + native.size() * 3);
    for (const char c : native) {
        const auto byte = static_cast<unsigned char>(c);
        if (keptLiterallyInURL[byte]) {
            url.append(c);
        } else {
            url.append('%');
            url.append(digits[byte >> 4]);
            url.append(digits[byte & 0xF]);
        }
    }
    return QString::fromLatin1(url);
}

QString PathText::pathFromFileURLString(const QString& url)
{
    const QUrl parsed(url, QUrl::StrictMode);
    if (!parsed.isValid() || !parsed.isLocalFile())
        return {};
    // Percent escapes stand for bytes of the native name, so they are decoded to bytes and the
    // bytes to text as a name read from the disk is.
    QString path = NativePath::decode(QByteArray::fromPercentEncoding(parsed.path(QUrl::FullyEncoded).toLatin1()));
    if (const QString host = parsed.host(); !host.isEmpty())
        path =
            QStringLiteral("//") + host + (path.startsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) + path;
    return path;
}

} // namespace kestrow
