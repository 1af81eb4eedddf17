#include "cleanup/TrashPipelineError.h"

namespace kestrow {

TrashPipelineError::TrashPipelineError(Case kind, QString detail)
    : m_case(kind)
    , m_detail(std::move(detail))
{
}

TrashPipelineError TrashPipelineError::sandboxViolation(QString detail)
{
    return {Case::sandboxViolation, std::move(detail)};
}

TrashPipelineError TrashPipelineError::itemNotFound(QString detail)
{
    return {Case::itemNotFound, std::move(detail)};
}

TrashPipelineError TrashPipelineError::itemLockedOrPermissionDenied(QString detail)
{
    return {Case::itemLockedOrPermissionDenied, std::move(detail)};
}

TrashPipelineError TrashPipelineError::underlyingError(QString detail)
{
    return {Case::underlyingError, std::move(detail)};
}

TrashPipelineError TrashPipelineError::unconfirmedPermanentPurge()
{
    return {Case::unconfirmedPermanentPurge};
}

TrashPipelineError TrashPipelineError::emptyTargetList()
{
    return {Case::emptyTargetList};
}

QString TrashPipelineError::description() const
{
    switch (m_case) {
    case Case::sandboxViolation:
        return QStringLiteral("Sandbox security violation: Path is forbidden: ") + m_detail;
    case Case::itemNotFound:
        return QStringLiteral("Target item not found on disk: ") + m_detail;
    case Case::itemLockedOrPermissionDenied:
        return QStringLiteral("Target item is locked or permission was denied: ") + m_detail;
    case Case::underlyingError:
        return QStringLiteral("TrashPipeline filesystem error: ") + m_detail;
    case Case::unconfirmedPermanentPurge:
        return QStringLiteral("Permanent purge was requested without explicit confirmation flag.");
    case Case::emptyTargetList:
        return QStringLiteral("No target items provided for cleanup operation.");
    }
    return {};
}

} // namespace kestrow
