#pragma once

#include "cleanup/AuditLogEntry.h"
#include "cleanup/AuditLoggerError.h"
#include "cleanup/AuditOperationType.h"
#include "cleanup/AuditVerificationResult.h"
#include "platform/FileManager.h"
#include "platform/LockedFile.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrow {

// The tamper-evident record of every cleanup run: an append-only JSON Lines file in which
// each line carries the SHA-256 of its content chained to the hash of the line before. The
// file alone is the truth: every append checks every line and chains to the last, reading
// the file as a stream in fixed memory. One operation at a time per logger, and between
// processes an advisory lock on the file: shared while reading, exclusive from the reading of
// the tail to the end of the append, so that concurrent writers chain one after the other.
// The log is opened by name in its folder and must be a regular file: a symbolic link is
// never followed, and a new log is made exclusively, never renamed over one.
class AuditLogger {
public:
    struct Options {
        std::optional<QString> logFileURL; // absent: `defaultLogFile(homeURL)`
        QString homeURL;                   // empty: the user's home
        std::shared_ptr<const FileManager> fileManager;
    };

    // Touches nothing on disk.
    explicit AuditLogger(Options options = {});

    // Appends one line, in one write, and returns what it wrote. Creates the folder (0700,
    // with its parents) and the file (0600) on first use; every line is forced to disk before
    // this returns. Throws AuditLoggerError; a log with an undecodable line takes no further
    // lines, and a write that fails leaves the file as it was.
    AuditLogEntry record(const QUuid& operationId, AuditOperationType operationType, std::int64_t itemsCount,
                         std::int64_t bytesFreed, const QStringList& paths, const QString& client,
                         std::optional<double> durationMs, const QDateTime& date);

    // Does all that `record` does before it writes: makes the folder and the file when
    // absent, takes the lock and checks every line. Throws what `record` would throw then.
    void checkWritable();

    // Every entry in file order; an absent file is an empty log. Throws AuditLoggerError.
    [[nodiscard]] std::vector<AuditLogEntry> readEntries();

    // Walks the chain and names the first broken line, holding one line at a time. Throws
    // the errors of readEntries.
    [[nodiscard]] AuditVerificationResult verifyIntegrity();

    // The hex SHA-256 that chains a line: writer and verifier both come here.
    [[nodiscard]] static QString computeHash(const QString& previousHash, const QString& timestamp,
                                             const QString& operationId, const QString& operationType,
                                             std::int64_t itemsCount, std::int64_t bytesFreed, const QStringList& paths,
                                             const QString& client, std::optional<double> durationMs);
    // The duration as the hash input writes it: "0.0" when absent, else the shortest text that
    // reads back as the same value, always with a fraction ("1250.0"), in exponent form below
    // 0.0001 and above 2^53 ("1e-05", "1e+16").
    [[nodiscard]] static QString durationText(std::optional<double> durationMs);

    [[nodiscard]] static QString genesisHash(); // 64 zeros: the previous hash of the first line
    [[nodiscard]] static QString defaultLogDirectory(const QString& homeURL);
    [[nodiscard]] static QString defaultLogFile(const QString& homeURL);

    [[nodiscard]] const QString& logFileURL() const { return m_logFileURL; }
    // The previous hash the last append resolved, then the hash it wrote. Never consulted.
    [[nodiscard]] std::optional<QString> lastHash() const;

private:
    [[nodiscard]] LockedFile openForAppending() const;
    // Nothing when there is no log.
    [[nodiscard]] std::optional<LockedFile> openForReading() const;

    QString m_logFileURL;
    std::shared_ptr<const FileManager> m_fileManager;
    std::optional<QString> m_lastHash;
    mutable std::mutex m_operation;
};

} // namespace kestrow
