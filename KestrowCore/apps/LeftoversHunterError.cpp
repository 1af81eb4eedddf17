#include "apps/LeftoversHunterError.h"

namespace kestrow {

LeftoversHunterError::LeftoversHunterError(Case kind, QString detail)
    : m_case(kind)
    , m_detail(std::move(detail))
{
}

LeftoversHunterError LeftoversHunterError::directoryAccessDenied(QString path)
{
    return {Case::directoryAccessDenied, std::move(path)};
}

LeftoversHunterError LeftoversHunterError::underlyingError(QString detail)
{
    return {Case::underlyingError, std::move(detail)};
}

LeftoversHunterError LeftoversHunterError::scanCancelled()
{
    return {Case::scanCancelled};
}

QString LeftoversHunterError::description() const
{
    switch (m_case) {
    case Case::directoryAccessDenied:
        return QStringLiteral("Permission denied accessing candidate directory: ") + m_detail;
    case Case::underlyingError:
        return QStringLiteral("LeftoversHunter error: ") + m_detail;
    case Case::scanCancelled:
        return QStringLiteral("Leftovers scan was cancelled.");
    }
    return {};
}

} // namespace kestrow
