#include "platform/LinkResolver.h"

#include "platform/FileStatus.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"

#include <QStringList>

#include <algorithm>
#include <deque>
#include <fcntl.h>

namespace kestrow {

namespace {

// The most links one resolution follows, as the kernel allows (MAXSYMLINKS); a longer chain
// is a loop.
constexpr int maximumLinksFollowed = 40;

// Room for any link target the platforms allow.
constexpr qsizetype minimumLinkBuffer = 4096;

// The component's absence ends the resolution as cleanly as its presence: nothing below it
// can exist, so the rest of the path leads nowhere else.
bool isAbsence(int errorCode)
{
    return errorCode == ENOENT || errorCode == ENOTDIR;
}

} // namespace

LinkResolver::LinkResolver(const SystemCalls& systemCalls)
    : m_systemCalls(systemCalls)
{
}

LinkResolution LinkResolver::resolve(const QString& path, const QString& linkFreeFolder) const
{
    LinkResolution result;
    // The texts the pending components point into: the path, then each link target met.
    std::deque<QString> texts{PathText::absolute(path)};
    const QString& absolutePath = texts.front();
    const bool insideLinkFree =
        linkFreeFolder.size() > 1 && absolutePath.startsWith(linkFreeFolder) &&
        (absolutePath.size() == linkFreeFolder.size() || absolutePath.at(linkFreeFolder.size()) == QLatin1Char('/'));
    QString resolved = insideLinkFree ? linkFreeFolder : QStringLiteral("/");
    resolved.reserve(absolutePath.size());
    QList<QStringView> pending = QStringView(absolutePath)
                                     .mid(insideLinkFree ? linkFreeFolder.size() : 0)
                                     .split(QLatin1Char('/'), Qt::SkipEmptyParts);
    qsizetype next = 0;
    // `resolved` as the disk names it, grown a component at a time while components are examined.
    QByteArray native = NativePath::encode(resolved);
    native.reserve(absolutePath.size());
    int linksFollowed = 0;
    bool examining = true;
    const auto stopExamining = [&](int errorCode) {
        examining = false;
        if (!isAbsence(errorCode)) {
            result.errorCode = errorCode;
            result.unexaminedPath = resolved;
        }
    };
    const auto restartAt = [&](const QString& folder) {
        resolved = folder;
        native = NativePath::encode(folder);
    };
    while (next < pending.size()) {
        const QStringView component = pending.at(next++);
        if (component == QLatin1String("."))
            continue;
        if (component == QLatin1String("..")) {
            restartAt(PathText::parent(resolved));
            continue;
        }
        if (resolved.size() > 1) {
            resolved += QLatin1Char('/');
            native += '/';
        }
        resolved += component;
        if (!examining)
            continue;
        native += NativePath::encode(component);
        FileStatus status;
        if (m_systemCalls.statAt(AT_FDCWD, native.constData(), AT_SYMLINK_NOFOLLOW, status) != 0) {
            stopExamining(errno);
            continue;
        }
        if (!status.isSymbolicLink())
            continue;
        if (++linksFollowed > maximumLinksFollowed) {
            stopExamining(ELOOP);
            continue;
        }
        QByteArray target(std::max(static_cast<qsizetype>(status.size) + 1, minimumLinkBuffer), Qt::Uninitialized);
        const ssize_t length =
            m_systemCalls.readLinkAt(AT_FDCWD, native.constData(), target.data(), static_cast<size_t>(target.size()));
        if (length < 0 || length >= target.size()) {
            // A target longer than the link said when it was looked at: it changed meanwhile.
            stopExamining(length < 0 ? errno : EAGAIN);
            continue;
        }
        target.truncate(length);
        restartAt(target.startsWith('/') ? QStringLiteral("/") : PathText::parent(resolved));
        texts.push_back(NativePath::decode(target));
        QList<QStringView> followed = QStringView(texts.back()).split(QLatin1Char('/'), Qt::SkipEmptyParts);
        followed.append(pending.mid(next));
        pending = std::move(followed);
        next = 0;
    }
    result.path = droppingPrivatePrefix(resolved);
    return result;
}

QString LinkResolver::resolvingSymbolicLinks(const QString& path, const QString& linkFreeFolder) const
{
    return resolve(path, linkFreeFolder).path;
}

QString LinkResolver::droppingPrivatePrefix(const QString& path) const
{
    const QLatin1String prefix("/private/");
    if (!path.startsWith(prefix))
        return path;
    const QString shortened = path.mid(prefix.size() - 1);
    return exists(shortened) ? shortened : path;
}

bool LinkResolver::exists(const QString& path) const
{
    FileStatus status;
    return m_systemCalls.statAt(AT_FDCWD, NativePath::encode(path).constData(), 0, status) == 0;
}

} // namespace kestrow
