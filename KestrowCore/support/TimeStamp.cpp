#include "support/TimeStamp.h"

#include <QRegularExpression>

#include <cmath>

namespace kestrow {

namespace {
constexpr qint64 referenceDateUnixSeconds = 978307200; // 2001-01-01T00:00:00Z
}

QString TimeStamp::iso8601(const QDateTime& moment)
{
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + QLatin1Char('Z');
}

QString TimeStamp::iso8601WithMilliseconds(const QDateTime& moment)
{
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")) + QLatin1Char('Z');
}

std::optional<QDateTime> TimeStamp::parseIso8601(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}T\\d{2}:\\d{2}:\\d{2}Z$"));
    if (!form.match(text).hasMatch())
        return std::nullopt;
    QDateTime moment = QDateTime::fromString(text.left(19), QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    if (!moment.isValid())
        return std::nullopt;
    moment.setTimeSpec(Qt::UTC);
    return moment;
}

double TimeStamp::secondsSinceReferenceDate(const QDateTime& moment)
{
    return static_cast<double>(moment.toMSecsSinceEpoch() - referenceDateUnixSeconds * 1000) / 1000.0;
}

QDateTime TimeStamp::fromSecondsSinceReferenceDate(double seconds)
{
    const auto msecs = static_cast<qint64>(std::llround(seconds * 1000.0)) + referenceDateUnixSeconds * 1000;
    return QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
}

QDateTime TimeStamp::fromUnixNanoseconds(long long nanoseconds)
{
    return QDateTime::fromMSecsSinceEpoch(nanoseconds / 1000000, Qt::UTC);
}

} // namespace kestrow
