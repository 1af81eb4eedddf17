#include "cleanup/AuditLoggerError.h"

namespace kestrow {

AuditLoggerError::AuditLoggerError(Case kind, QString message, int line)
    : m_case(kind)
    , m_message(std::move(message))
    , m_line(line)
{
}

AuditLoggerError AuditLoggerError::directoryCreationFailed(QString message)
{
    return {Case::directoryCreationFailed, std::move(message)};
}

AuditLoggerError AuditLoggerError::writeFailed(QString message)
{
    return {Case::writeFailed, std::move(message)};
}

AuditLoggerError AuditLoggerError::readFailed(QString message)
{
    return {Case::readFailed, std::move(message)};
}

AuditLoggerError AuditLoggerError::decodingFailed(QString message, int line)
{
    return {Case::decodingFailed, std::move(message), line};
}

QString AuditLoggerError::description() const
{
    switch (m_case) {
    case Case::directoryCreationFailed:
        return QStringLiteral("Failed to create ~/.kestrow directory: ") + m_message;
    case Case::writeFailed:
        return QStringLiteral("Failed to write audit log entry: ") + m_message;
    case Case::readFailed:
        return QStringLiteral("Failed to read audit log file: ") + m_message;
    case Case::decodingFailed:
        return QStringLiteral("Failed to parse audit log at line ") + QString::number(m_line) + QStringLiteral(": ") +
               m_message;
    }
    return {};
}

} // namespace kestrow
