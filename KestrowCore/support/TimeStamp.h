#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace kestrow {

// The time stamp texts of the system's documents, all in UTC.
class TimeStamp {
public:
    // "2026-03-01T10:15:30Z": documents and the rule file.
    [[nodiscard]] static QString iso8601(const QDateTime& moment);
    // "2026-03-01T10:15:30.123Z": the audit log.
    [[nodiscard]] static QString iso8601WithMilliseconds(const QDateTime& moment);
    // Reads exactly the form of `iso8601`; anything else, fractions included, gives nothing.
    [[nodiscard]] static std::optional<QDateTime> parseIso8601(const QString& text);

    // Seconds since 2001-01-01T00:00:00Z, the system's numeric time stamp.
    [[nodiscard]] static double secondsSinceReferenceDate(const QDateTime& moment);
    [[nodiscard]] static QDateTime fromSecondsSinceReferenceDate(double seconds);

    // Nanoseconds since the Unix epoch (as the file system gives them) to a moment.
    [[nodiscard]] static QDateTime fromUnixNanoseconds(long long nanoseconds);
};

} // namespace kestrow
