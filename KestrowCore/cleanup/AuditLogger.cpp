#include "cleanup/AuditLogger.h"

#include "platform/SystemMessage.h"

#include "cleanup/AuditLineScanner.h"
#include "cleanup/AuditLineStream.h"
#include "platform/NativePath.h"
#include "platform/OpenedFolder.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "storage/DiscoveredItem.h"
#include "support/JsonDecoder.h"
#include "support/JsonWriter.h"
#include "support/TimeStamp.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>
#include <tuple>

namespace kestrow {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

AuditLoggerError readFailed(const QString& reason)
{
    return AuditLoggerError::readFailed(QStringLiteral("Could not read audit log: ") + reason);
}

QString refusalText(LockedFile::Refusal refusal)
{
    return refusal == LockedFile::Refusal::symbolicLink
               ? QStringLiteral("The file is a symbolic link, which is never followed.")
               : QStringLiteral("The file is not a regular file.");
}

// Ascending code point order of the composed form; the native bytes of the text itself break
// ties, so that the order is total and a path array hashes alike in any order.
QStringList sortedPaths(const QStringList& paths)
{
    std::vector<std::tuple<QByteArray, QByteArray, QString>> keyed;
    keyed.reserve(static_cast<size_t>(paths.size()));
    for (const QString& path : paths)
        keyed.emplace_back(NativePath::encode(path.normalized(QString::NormalizationForm_C)), NativePath::encode(path),
                           path);
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        return std::tie(std::get<0>(a), std::get<1>(a)) < std::tie(std::get<0>(b), std::get<1>(b));
    });
    QStringList sorted;
    sorted.reserve(paths.size());
    for (auto& key : keyed)
        sorted.append(std::move(std::get<2>(key)));
    return sorted;
}

// A line as an entry: the quick scanner first, the full decoder when it declines. A line that
// neither reads fails the log at its number, once the rest of the file is known to be UTF-8:
// a file that is not text at all is the graver fault and is named first.
AuditLogEntry decodeLine(QByteArrayView line, AuditLineStream& lines)
{
    AuditLogEntry entry;
    if (AuditLineScanner::scan(line, &entry))
        return entry;
    try {
        return AuditLogEntry::fromJson(JsonDecoder::parse(line.toByteArray()));
    } catch (const JsonDecodingError& error) {
        const int lineNumber = lines.lineNumber();
        lines.checkRest();
        throw AuditLoggerError::decodingFailed(error.description(), lineNumber);
    }
}

template <typename Visit> void forEachEntry(const LockedFile& log, Visit&& visit)
{
    AuditLineStream lines(log);
    while (const std::optional<QByteArrayView> line = lines.next())
        visit(decodeLine(*line, lines));
}

// What an append chains to: the hash of the last line (every line checked on the way, none
// kept but the last), and whether the file ends with a line break.
struct Tail {
    QString lastHash;
    bool endsWithLineBreak = true;
};

Tail readTail(const LockedFile& log)
{
    AuditLineStream lines(log);
    QByteArray last;
    while (const std::optional<QByteArrayView> line = lines.next()) {
        if (!AuditLineScanner::scan(*line))
            (void)decodeLine(*line, lines);
        last.resize(0);
        last.append(*line);
    }
    return {last.isEmpty() ? AuditLogger::genesisHash() : decodeLine(last, lines).rollingHash,
            lines.endsWithLineBreak()};
}

QString appendFailure(const LockedFile::AppendOutcome& outcome, qsizetype size)
{
    const QString reason = outcome.errorCode != 0 ? SystemMessage::of(outcome.errorCode)
                                                  : QStringLiteral("Only %1 of %2 bytes could be written.")
                                                        .arg(QString::number(outcome.written), QString::number(size));
    return QStringLiteral("Failed to append data to log file: ") + reason;
}

} // namespace

AuditLogger::AuditLogger(Options options)
    : m_logFileURL(options.logFileURL.value_or(
          defaultLogFile(options.homeURL.isEmpty() ? ProcessFolders::home() : options.homeURL)))
    , m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
{
}

QString AuditLogger::genesisHash()
{
    return QString(64, QLatin1Char('0'));
}

QString AuditLogger::defaultLogDirectory(const QString& homeURL)
{
    return PathText::appending(homeURL, QStringLiteral(".kestrow"));
}

QString AuditLogger::defaultLogFile(const QString& homeURL)
{
    return PathText::appending(defaultLogDirectory(homeURL), QStringLiteral("audit.jsonl"));
}

std::optional<QString> AuditLogger::lastHash() const
{
    std::lock_guard operation(m_operation);
    return m_lastHash;
}

QString AuditLogger::durationText(std::optional<double> durationMs)
{
    if (!durationMs)
        return QStringLiteral("0.0");
    const double value = *durationMs;
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    const QString sign = std::signbit(value) ? QStringLiteral("-") : QString();
    if (value == 0)
        return sign + QStringLiteral("0.0");

    // The shortest round-trip digits, as "d.ddde±x"; the layout around them is ours.
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific).ptr;
    const std::string_view text(buffer, static_cast<size_t>(end - buffer));
    const size_t e = text.find('e');
    QString digits = QString::fromLatin1(text.substr(0, 1));
    if (e > 1)
        digits += QString::fromLatin1(text.substr(2, e - 2));
    const std::string_view exponentText = text.substr(e + (text[e + 1] == '+' ? 2 : 1));
    int exponent = 0;
    std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);

    const auto count = static_cast<int>(digits.size());
    if (exponent < -4 || std::fabs(value) > 0x1.0p53) {
        QString out = sign + digits.at(0);
        if (count > 1)
            out += QLatin1Char('.') + digits.mid(1);
        out += exponent < 0 ? QStringLiteral("e-") : QStringLiteral("e+");
        return out + QStringLiteral("%1").arg(std::abs(exponent), 2, 10, QLatin1Char('0'));
    }
    const int pointAt = exponent + 1; // digits before the decimal point
    if (pointAt <= 0)
        return sign + QStringLiteral("0.") + QString(-pointAt, QLatin1Char('0')) + digits;
    if (pointAt < count)
        return sign + digits.left(pointAt) + QLatin1Char('.') + digits.mid(pointAt);
    return sign + digits + QString(pointAt - count, QLatin1Char('0')) + QStringLiteral(".0");
}

QString AuditLogger::computeHash(const QString& previousHash, const QString& timestamp, const QString& operationId,
                                 const QString& operationType, std::int64_t itemsCount, std::int64_t bytesFreed,
                                 const QStringList& paths, const QString& client, std::optional<double> durationMs)
{
    const QString input = QStringList{previousHash,
                                      timestamp,
                                      operationId,
                                      operationType,
                                      QString::number(itemsCount),
                                      QString::number(bytesFreed),
                                      client,
                                      durationText(durationMs),
                                      sortedPaths(paths).join(QLatin1Char(','))}
                              .join(QLatin1Char('|'));
    // Raw bytes of names that are not UTF-8 hash as those bytes.
    return QString::fromLatin1(QCryptographicHash::hash(NativePath::encode(input), QCryptographicHash::Sha256).toHex());
}

AuditLogEntry AuditLogger::record(const QUuid& operationId, AuditOperationType operationType, std::int64_t itemsCount,
                                  std::int64_t bytesFreed, const QStringList& paths, const QString& client,
                                  std::optional<double> durationMs, const QDateTime& date)
{
    std::lock_guard operation(m_operation);
    const LockedFile log = openForAppending();
    const Tail tail = readTail(log);
    m_lastHash = tail.lastHash;

    AuditLogEntry entry{
        .timestamp = TimeStamp::iso8601WithMilliseconds(date),
        .operationId = uuidText(operationId),
        .operationType = operationType,
        .itemsCount = itemsCount,
        .bytesFreed = bytesFreed,
        .paths = paths,
        .client = client,
        .durationMs = durationMs,
        .previousHash = *m_lastHash,
    };
    entry.rollingHash = computeHash(entry.previousHash, entry.timestamp, entry.operationId, operationType.text(),
                                    itemsCount, bytesFreed, paths, client, durationMs);
    // JSON has no text for an infinite or undefined number.
    if (durationMs && !std::isfinite(*durationMs))
        throw AuditLoggerError::writeFailed(QStringLiteral("Failed to encode audit entry to JSON."));
    // A last line left unclosed (by an editor, say) is closed first, or the two would merge.
    QByteArray bytes = tail.endsWithLineBreak ? QByteArray() : QByteArray("\n");
    bytes += JsonWriter::compactSorted(entry.toJson());
    bytes += '\n';
    if (const LockedFile::AppendOutcome outcome = log.append(bytes); !outcome.succeeded())
        throw AuditLoggerError::writeFailed(appendFailure(outcome, bytes.size()));
    m_lastHash = entry.rollingHash;
    return entry;
}

void AuditLogger::checkWritable()
{
    std::lock_guard operation(m_operation);
    (void)readTail(openForAppending());
}

std::vector<AuditLogEntry> AuditLogger::readEntries()
{
    std::lock_guard operation(m_operation);
    const std::optional<LockedFile> log = openForReading();
    std::vector<AuditLogEntry> entries;
    if (log)
        forEachEntry(*log, [&entries](AuditLogEntry&& entry) { entries.push_back(std::move(entry)); });
    return entries;
}

AuditVerificationResult AuditLogger::verifyIntegrity()
{
    std::lock_guard operation(m_operation);
    const std::optional<LockedFile> log = openForReading();
    if (!log)
        return {true, 0, std::nullopt, std::nullopt};
    // Past a break every line is still decoded: one that cannot be is an error all the same,
    // and the result counts the entries of the whole file.
    int total = 0;
    QString expected = genesisHash();
    std::optional<int> brokenAt;
    std::optional<QString> reason;
    forEachEntry(*log, [&](AuditLogEntry&& entry) {
        const int n = ++total;
        if (reason)
            return;
        if (entry.previousHash != expected) {
            brokenAt = n - 1;
            reason = QStringLiteral("Previous hash mismatch at line %1. Expected %2, got %3")
                         .arg(QString::number(n), expected, entry.previousHash);
            return;
        }
        const QString computed =
            computeHash(entry.previousHash, entry.timestamp, entry.operationId, entry.operationType.text(),
                        entry.itemsCount, entry.bytesFreed, entry.paths, entry.client, entry.durationMs);
        if (computed != entry.rollingHash) {
            brokenAt = n - 1;
            reason = QStringLiteral("Rolling hash mismatch at line %1. Content was modified. Computed %2, stored %3")
                         .arg(QString::number(n), computed, entry.rollingHash);
            return;
        }
        expected = std::move(entry.rollingHash);
    });
    return {!reason, total, brokenAt, reason};
}

LockedFile AuditLogger::openForAppending() const
{
    const SystemCalls& calls = m_fileManager->systemCalls();
    const OpenedFolder folder =
        OpenedFolder::open(calls, NativePath::encode(PathText::parent(m_logFileURL)), folderMode);
    if (folder.creationFailed)
        throw AuditLoggerError::directoryCreationFailed(SystemMessage::of(folder.errorCode));
    if (!folder.fd.isOpen())
        throw AuditLoggerError::writeFailed(QStringLiteral("Unable to create log file: ") +
                                            SystemMessage::of(folder.errorCode));
    LockedFile log = LockedFile::open(calls, folder.fd.get(), NativePath::encode(PathText::lastComponent(m_logFileURL)),
                                      LockedFile::Access::append, fileMode);
    switch (log.refusal()) {
    case LockedFile::Refusal::none:
        return log;
    case LockedFile::Refusal::symbolicLink:
    case LockedFile::Refusal::notRegularFile:
        throw AuditLoggerError::writeFailed(refusalText(log.refusal()));
    case LockedFile::Refusal::creationFailed:
        throw AuditLoggerError::writeFailed(QStringLiteral("Unable to create log file: ") +
                                            SystemMessage::of(log.errorCode()));
    case LockedFile::Refusal::absent:
    case LockedFile::Refusal::failed:
        break;
    }
    throw AuditLoggerError::writeFailed(QStringLiteral("Unable to open log file handle for writing."));
}

std::optional<LockedFile> AuditLogger::openForReading() const
{
    const SystemCalls& calls = m_fileManager->systemCalls();
    const OpenedFolder folder = OpenedFolder::open(calls, NativePath::encode(PathText::parent(m_logFileURL)));
    if (!folder.fd.isOpen()) {
        if (folder.errorCode == ENOENT || folder.errorCode == ENOTDIR)
            return std::nullopt;
        throw readFailed(SystemMessage::of(folder.errorCode));
    }
    LockedFile log = LockedFile::open(calls, folder.fd.get(), NativePath::encode(PathText::lastComponent(m_logFileURL)),
                                      LockedFile::Access::read);
    switch (log.refusal()) {
    case LockedFile::Refusal::none:
        return log;
    case LockedFile::Refusal::absent:
        return std::nullopt;
    case LockedFile::Refusal::symbolicLink:
    case LockedFile::Refusal::notRegularFile:
        throw readFailed(refusalText(log.refusal()));
    case LockedFile::Refusal::creationFailed:
    case LockedFile::Refusal::failed:
        break;
    }
    throw readFailed(SystemMessage::of(log.errorCode()));
}

} // namespace kestrow
