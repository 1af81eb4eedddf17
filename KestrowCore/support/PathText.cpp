#include "support/PathText.h"

#include <QUrl>

namespace kestrow {

QString PathText::removingDotComponents(const QString& path)
{
    if (path.isEmpty())
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

QString PathText::fileURLString(const QString& path)
{
    return QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded());
}

QString PathText::pathFromFileURLString(const QString& url)
{
    const QUrl parsed(url, QUrl::StrictMode);
    if (!parsed.isValid() || !parsed.isLocalFile())
        return {};
    return parsed.toLocalFile();
}

} // namespace kestrow
