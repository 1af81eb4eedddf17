#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why the audit log could not be written or read. A broken chain is not an error: it is a
// verification result.
class AuditLoggerError : public KestrowError {
public:
    enum class Case { directoryCreationFailed, writeFailed, readFailed, decodingFailed };

    [[nodiscard]] static AuditLoggerError directoryCreationFailed(QString message);
    [[nodiscard]] static AuditLoggerError writeFailed(QString message);
    [[nodiscard]] static AuditLoggerError readFailed(QString message);
    // `line` counts the non-blank lines of the file from 1.
    [[nodiscard]] static AuditLoggerError decodingFailed(QString message, int line);

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] const QString& message() const { return m_message; }
    [[nodiscard]] int line() const { return m_line; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const AuditLoggerError& a, const AuditLoggerError& b)
    {
        return a.m_case == b.m_case && a.m_message == b.m_message && a.m_line == b.m_line;
    }

private:
    AuditLoggerError(Case kind, QString message, int line = 0);

    Case m_case;
    QString m_message;
    int m_line;
};

} // namespace kestrow
