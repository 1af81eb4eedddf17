#include "safety/SandboxSecurityError.h"

namespace kestrow {

SandboxSecurityError::SandboxSecurityError(Case errorCase, QString path, QString detail, QString reason,
                                           int componentCount)
    : m_case(errorCase)
    , m_path(std::move(path))
    , m_detail(std::move(detail))
    , m_reason(std::move(reason))
    , m_componentCount(componentCount)
{
}

SandboxSecurityError SandboxSecurityError::rootDirectoryTargeted(const QString& path)
{
    return {Case::rootDirectoryTargeted, path};
}

SandboxSecurityError SandboxSecurityError::homeDirectoryTargeted(const QString& path)
{
    return {Case::homeDirectoryTargeted, path};
}

SandboxSecurityError SandboxSecurityError::forbiddenSystemPath(const QString& path, const QString& matchedPrefix)
{
    return {Case::forbiddenSystemPath, path, matchedPrefix};
}

SandboxSecurityError SandboxSecurityError::forbiddenUserDirectory(const QString& path, const QString& matchedDirectory)
{
    return {Case::forbiddenUserDirectory, path, matchedDirectory};
}

SandboxSecurityError SandboxSecurityError::insufficientPathDepth(const QString& path, int componentCount)
{
    return {Case::insufficientPathDepth, path, {}, {}, componentCount};
}

SandboxSecurityError SandboxSecurityError::directoryTraversalDetected(const QString& path)
{
    return {Case::directoryTraversalDetected, path};
}

SandboxSecurityError SandboxSecurityError::symlinkEscapedSandbox(const QString& originalPath,
                                                                 const QString& resolvedPath, const QString& reason)
{
    return {Case::symlinkEscapedSandbox, originalPath, resolvedPath, reason};
}

SandboxSecurityError SandboxSecurityError::wildcardTargetsForbiddenScope(const QString& pattern,
                                                                         const QString& forbiddenScope)
{
    return {Case::wildcardTargetsForbiddenScope, pattern, forbiddenScope};
}

QString SandboxSecurityError::description() const
{
    const QString prefix = QStringLiteral("Sandbox Violation: ");
    switch (m_case) {
    case Case::rootDirectoryTargeted:
        return prefix + QStringLiteral("Root filesystem '/' cannot be targeted (") + m_path + QStringLiteral(").");
    case Case::homeDirectoryTargeted:
        return prefix + QStringLiteral("Home directory cannot be targeted directly (") + m_path + QStringLiteral(").");
    case Case::forbiddenSystemPath:
        return prefix + QStringLiteral("Path '") + m_path + QStringLiteral("' targets forbidden system path '") +
               m_detail + QStringLiteral("'.");
    case Case::forbiddenUserDirectory:
        return prefix + QStringLiteral("Path '") + m_path + QStringLiteral("' targets protected user directory '") +
               m_detail + QStringLiteral("'.");
    case Case::insufficientPathDepth:
        return prefix + QStringLiteral("Path '") + m_path + QStringLiteral("' has insufficient depth (") +
               QString::number(m_componentCount) + QStringLiteral(" components relative to home; minimum 2 required).");
    case Case::directoryTraversalDetected:
        return prefix + QStringLiteral("Path traversal tokens ('..') detected in '") + m_path + QStringLiteral("'.");
    case Case::symlinkEscapedSandbox:
        return prefix + QStringLiteral("Symlink '") + m_path + QStringLiteral("' resolves to forbidden path '") +
               m_detail + QStringLiteral("': ") + m_reason;
    case Case::wildcardTargetsForbiddenScope:
        return prefix + QStringLiteral("Rule pattern '") + m_path + QStringLiteral("' matches forbidden scope '") +
               m_detail + QStringLiteral("'.");
    }
    return prefix;
}

} // namespace kestrow
