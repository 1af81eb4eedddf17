#include "system/TCCIsolationHelper.h"

namespace kestrow {

bool TCCIsolationHelper::isPermissionOrTCCError(const std::error_code& error)
{
    return error == std::errc::operation_not_permitted || error == std::errc::permission_denied;
}

bool TCCIsolationHelper::isPermissionOrTCCError(int errorCode)
{
    return isPermissionOrTCCError(std::error_code(errorCode, std::generic_category()));
}

QString TCCIsolationHelper::fdaWarning(const QString& targetName, const QString& path)
{
    return QStringLiteral("Full Disk Access is required to scan ") + targetName + QStringLiteral(" at ") + path +
           QStringLiteral(". Grant Full Disk Access in System Settings > Privacy & Security > Full Disk Access.");
}

} // namespace kestrow
