#include "cleanup/AuditLogger.h"

#include "storage/DiscoveredItem.h"
#include "support/JsonDecoder.h"
#include "support/JsonWriter.h"
#include "support/PathText.h"
#include "support/TimeStamp.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kestrow {

namespace {

constexpr mode_t directoryMode = 0700;

QString systemMessage(int errorCode)
{
    return QString::fromStdString(std::generic_category().message(errorCode));
}

// Writes every byte, across short writes and interruptions; false with errno set on failure.
bool writeAll(int fd, const QByteArray& bytes)
{
    const char* data = bytes.constData();
    qsizetype remaining = bytes.size();
    while (remaining > 0) {
        const ssize_t written = ::write(fd, data, static_cast<size_t>(remaining));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        remaining -= written;
    }
    return true;
}

// Line breaks of the Unicode newline set: LF, VT, FF, CR, NEL, LS, PS.
bool isNewline(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029;
}

bool isBlank(QStringView line)
{
    return std::all_of(line.begin(), line.end(),
                       [](QChar c) { return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space; });
}

// Code point order of the composed form, so that writer and verifier order any text alike.
QStringList sortedPaths(const QStringList& paths)
{
    std::vector<std::pair<QByteArray, QString>> keyed;
    keyed.reserve(static_cast<size_t>(paths.size()));
    for (const QString& path : paths)
        keyed.emplace_back(path.normalized(QString::NormalizationForm_C).toUtf8(), path);
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList sorted;
    sorted.reserve(paths.size());
    for (auto& [key, path] : keyed)
        sorted.append(std::move(path));
    return sorted;
}

} // namespace

AuditLogger::AuditLogger(Options options)
    : m_logFileURL(
          options.logFileURL.value_or(defaultLogFile(options.homeURL.isEmpty() ? QDir::homePath() : options.homeURL)))
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
    return QString::fromLatin1(QCryptographicHash::hash(input.toUtf8(), QCryptographicHash::Sha256).toHex());
}

AuditLogEntry AuditLogger::record(const QUuid& operationId, AuditOperationType operationType, std::int64_t itemsCount,
                                  std::int64_t bytesFreed, const QStringList& paths, const QString& client,
                                  std::optional<double> durationMs, const QDateTime& date)
{
    std::lock_guard operation(m_operation);
    createLogDirectory();
    const std::vector<AuditLogEntry> entries = readEntriesLocked();
    m_lastHash = entries.empty() ? genesisHash() : entries.back().rollingHash;

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
    writeLine(JsonWriter::compactSorted(entry.toJson()) + '\n');
    m_lastHash = entry.rollingHash;
    return entry;
}

std::vector<AuditLogEntry> AuditLogger::readEntries()
{
    std::lock_guard operation(m_operation);
    return readEntriesLocked();
}

std::vector<AuditLogEntry> AuditLogger::readEntriesLocked() const
{
    if (!m_fileManager->fileExists(m_logFileURL))
        return {};
    QFile file(m_logFileURL);
    if (!file.open(QIODevice::ReadOnly))
        throw AuditLoggerError::readFailed(QStringLiteral("Could not read audit log: ") + file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw AuditLoggerError::readFailed(QStringLiteral("Could not read audit log: ") + file.errorString());
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        throw AuditLoggerError::readFailed(
            QStringLiteral("Could not read audit log: The file is not valid UTF-8 text."));

    std::vector<AuditLogEntry> entries;
    int lineNumber = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isNewline(text.at(i)))
            continue;
        const QStringView line = QStringView(text).mid(start, i - start);
        start = i + 1;
        if (isBlank(line))
            continue;
        ++lineNumber;
        try {
            entries.push_back(AuditLogEntry::fromJson(JsonDecoder::parse(line.toUtf8())));
        } catch (const JsonDecodingError& error) {
            throw AuditLoggerError::decodingFailed(error.description(), lineNumber);
        }
    }
    return entries;
}

AuditVerificationResult AuditLogger::verifyIntegrity()
{
    std::lock_guard operation(m_operation);
    const std::vector<AuditLogEntry> entries = readEntriesLocked();
    const auto total = static_cast<int>(entries.size());
    QString expected = genesisHash();
    for (int n = 1; n <= total; ++n) {
        const AuditLogEntry& entry = entries[static_cast<size_t>(n - 1)];
        if (entry.previousHash != expected) {
            return {false, total, n - 1,
                    QStringLiteral("Previous hash mismatch at line %1. Expected %2, got %3")
                        .arg(QString::number(n), expected, entry.previousHash)};
        }
        const QString computed =
            computeHash(entry.previousHash, entry.timestamp, entry.operationId, entry.operationType.text(),
                        entry.itemsCount, entry.bytesFreed, entry.paths, entry.client, entry.durationMs);
        if (computed != entry.rollingHash) {
            return {false, total, n - 1,
                    QStringLiteral("Rolling hash mismatch at line %1. Content was modified. Computed %2, stored %3")
                        .arg(QString::number(n), computed, entry.rollingHash)};
        }
        expected = entry.rollingHash;
    }
    return {true, total, std::nullopt, std::nullopt};
}

void AuditLogger::createLogDirectory() const
{
    QStringList missing;
    for (QString folder = PathText::parent(m_logFileURL); !m_fileManager->fileExists(folder);
         folder = PathText::parent(folder)) {
        missing.prepend(folder);
        if (folder == QLatin1String("/") || folder == QLatin1String("."))
            break;
    }
    for (const QString& folder : missing) {
        const QByteArray native = QFile::encodeName(folder);
        if (::mkdir(native.constData(), directoryMode) != 0 && errno != EEXIST)
            throw AuditLoggerError::directoryCreationFailed(systemMessage(errno));
        ::chmod(native.constData(), directoryMode); // exactly 0700, whatever the umask
    }
}

void AuditLogger::writeLine(const QByteArray& line) const
{
    const QByteArray path = QFile::encodeName(m_logFileURL);
    if (m_fileManager->fileExists(m_logFileURL)) {
        int fd;
        do {
            fd = ::open(path.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
        } while (fd < 0 && errno == EINTR);
        if (fd < 0)
            throw AuditLoggerError::writeFailed(QStringLiteral("Unable to open log file handle for writing."));
        const bool written = writeAll(fd, line) && ::fsync(fd) == 0;
        const int failure = errno;
        ::close(fd);
        if (!written)
            throw AuditLoggerError::writeFailed(QStringLiteral("Failed to append data to log file: ") +
                                                systemMessage(failure));
        return;
    }

    // A new log appears whole or not at all: written beside it, then renamed into place.
    // mkostemp creates the file with mode 0600, the log's own mode.
    QByteArray temporary = path + ".XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        throw AuditLoggerError::writeFailed(QStringLiteral("Unable to create log file: ") + systemMessage(errno));
    const bool written = writeAll(fd, line) && ::fsync(fd) == 0;
    int failure = errno;
    ::close(fd);
    if (written && ::rename(temporary.constData(), path.constData()) == 0) {
        // The new name must reach the disk too.
        const int folder = ::open(QFile::encodeName(PathText::parent(m_logFileURL)).constData(), O_RDONLY | O_CLOEXEC);
        if (folder >= 0) {
            ::fsync(folder);
            ::close(folder);
        }
        return;
    }
    if (written)
        failure = errno;
    ::unlink(temporary.constData());
    throw AuditLoggerError::writeFailed(QStringLiteral("Unable to create log file: ") + systemMessage(failure));
}

} // namespace kestrow
