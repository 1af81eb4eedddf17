#include "platform/TrashInfo.h"

namespace kestrow {

namespace {

bool keptAsIs(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~' || c == '/';
}

} // namespace

QByteArray TrashInfo::content(const QByteArray& originalPath, std::time_t deletedAt)
{
    std::tm local{};
    char date[32] = {};
    if (::localtime_r(&deletedAt, &local))
        std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return QByteArrayLiteral("[Trash Info]\nPath=") + encodePath(originalPath) + QByteArrayLiteral("\nDeletionDate=") +
           date + '\n';
}

QByteArray TrashInfo::encodePath(const QByteArray& path)
{
    static constexpr char hex[] = "0123456789ABCDEF";
    QByteArray encoded;
    encoded.reserve(path.size() * 3);
    for (const char byte : path) {
        const auto c = static_cast<unsigned char>(byte);
        if (keptAsIs(c)) {
            encoded.append(byte);
        } else {
            encoded.append('%');
            encoded.append(hex[c >> 4]);
            encoded.append(hex[c & 0x0F]);
        }
    }
    return encoded;
}

std::optional<TrashInfo::Fields> TrashInfo::read(const QByteArray& content)
{
    bool inGroup = false;
    std::optional<Fields> fields;
    std::optional<QDateTime> deletedAt;
    for (const QByteArray& rawLine : content.split('\n')) {
        const QByteArray line = rawLine.endsWith('\r') ? rawLine.chopped(1) : rawLine;
        if (line.startsWith('[')) {
            inGroup = line == "[Trash Info]";
            continue;
        }
        if (!inGroup)
            continue;
        if (line.startsWith("Path=") && !fields) {
            fields = Fields{QByteArray::fromPercentEncoding(line.mid(5)), std::nullopt};
        } else if (line.startsWith("DeletionDate=") && !deletedAt) {
            QDateTime date = QDateTime::fromString(QString::fromLatin1(line.mid(13)), Qt::ISODate);
            if (date.isValid())
                deletedAt = date.toLocalTime();
        }
    }
    if (fields && !fields->originalPath.isEmpty()) {
        fields->deletedAt = deletedAt;
        return fields;
    }
    return std::nullopt;
}

} // namespace kestrow
