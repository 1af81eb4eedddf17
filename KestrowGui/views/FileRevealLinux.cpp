#include "views/FileReveal.h"

#include "platform/NativePath.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QUrl>

namespace kestrow {

namespace {

// The URL of a path, byte for byte: bytes that are no UTF-8 travel as their percent escapes.
QUrl fileUrl(const QByteArray& path)
{
    return QUrl::fromEncoded(QByteArrayLiteral("file://") + path.toPercentEncoding("/"));
}

} // namespace

void FileReveal::show(const QString& path)
{
    const QByteArray bytes = NativePath::encode(path);
    // The file managers of the common desktops answer this call and select the file; without one
    // the folder opens instead.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QString::fromLatin1(fileUrl(bytes).toEncoded())} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return;
    const qsizetype slash = bytes.lastIndexOf('/');
    QDesktopServices::openUrl(fileUrl(slash > 0 ? bytes.left(slash) : QByteArrayLiteral("/")));
}

} // namespace kestrow
