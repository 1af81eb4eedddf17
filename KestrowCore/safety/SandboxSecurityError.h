#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why the sandbox refused a path or a rule pattern. Each case carries the values its
// description names; two errors are equal when case and values are equal.
class SandboxSecurityError : public KestrowError {
public:
    enum class Case {
        rootDirectoryTargeted,         // path
        homeDirectoryTargeted,         // path
        forbiddenSystemPath,           // path, matchedPrefix
        forbiddenUserDirectory,        // path, matchedDirectory
        insufficientPathDepth,         // path, componentCount
        directoryTraversalDetected,    // path
        symlinkEscapedSandbox,         // originalPath, resolvedPath, reason
        wildcardTargetsForbiddenScope, // pattern, forbiddenScope
    };

    [[nodiscard]] static SandboxSecurityError rootDirectoryTargeted(const QString& path);
    [[nodiscard]] static SandboxSecurityError homeDirectoryTargeted(const QString& path);
    [[nodiscard]] static SandboxSecurityError forbiddenSystemPath(const QString& path, const QString& matchedPrefix);
    [[nodiscard]] static SandboxSecurityError forbiddenUserDirectory(const QString& path,
                                                                     const QString& matchedDirectory);
    [[nodiscard]] static SandboxSecurityError insufficientPathDepth(const QString& path, int componentCount);
    [[nodiscard]] static SandboxSecurityError directoryTraversalDetected(const QString& path);
    [[nodiscard]] static SandboxSecurityError symlinkEscapedSandbox(const QString& originalPath,
                                                                    const QString& resolvedPath, const QString& reason);
    [[nodiscard]] static SandboxSecurityError wildcardTargetsForbiddenScope(const QString& pattern,
                                                                            const QString& forbiddenScope);

    [[nodiscard]] Case errorCase() const { return m_case; }
    // The path, or the original path of a link, or the rule pattern.
    [[nodiscard]] const QString& path() const { return m_path; }
    // The matched prefix or directory, the resolved path of a link, or the forbidden scope;
    // empty for the other cases.
    [[nodiscard]] const QString& detail() const { return m_detail; }
    // Why a link escaped: the description of the check its target failed.
    [[nodiscard]] const QString& reason() const { return m_reason; }
    [[nodiscard]] int componentCount() const { return m_componentCount; }

    [[nodiscard]] QString description() const override;

    friend bool operator==(const SandboxSecurityError& a, const SandboxSecurityError& b)
    {
        return a.m_case == b.m_case && a.m_path == b.m_path && a.m_detail == b.m_detail && a.m_reason == b.m_reason &&
               a.m_componentCount == b.m_componentCount;
    }

private:
    SandboxSecurityError(Case errorCase, QString path, QString detail = {}, QString reason = {},
                         int componentCount = 0);

    Case m_case;
    QString m_path;
    QString m_detail;
    QString m_reason;
    int m_componentCount;
};

} // namespace kestrow
