#include "system/StartupError.h"

namespace kestrow {

StartupError::StartupError(Case kind, QString subject, QString detail)
    : m_case(kind)
    , m_subject(std::move(subject))
    , m_detail(std::move(detail))
{
}

StartupError StartupError::fileOperationFailed(QString path, QString reason)
{
    return {Case::fileOperationFailed, std::move(path), std::move(reason)};
}

StartupError StartupError::commandFailed(QString commandLine, QString output)
{
    return {Case::commandFailed, std::move(commandLine), std::move(output)};
}

StartupError StartupError::administratorRequired(QString item, QString commandLine)
{
    return {Case::administratorRequired, std::move(item), std::move(commandLine)};
}

QString StartupError::description() const
{
    switch (m_case) {
    case Case::fileOperationFailed:
        return m_subject + QStringLiteral(": ") + m_detail;
    case Case::commandFailed:
        return QStringLiteral("`") + m_subject + QStringLiteral("` failed: ") + m_detail;
    case Case::administratorRequired:
        return m_subject + QStringLiteral(" is a system service; only an administrator can change it: run `") +
               m_detail + QStringLiteral("`.");
    }
    return {};
}

} // namespace kestrow
