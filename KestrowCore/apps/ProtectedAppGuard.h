#pragma once

#include "apps/CodeSignatureReport.h"
#include "apps/InstalledApp.h"
#include "apps/ProtectionEvaluation.h"
#include "platform/CodeSignatureSource.h"
#include "platform/FileManager.h"
#include "platform/RunningApplications.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace kestrow {

// Decides which applications may never be uninstalled, reads code signatures, tells whether
// an application runs and stops one that does. Protection is by place, by volume, by
// file-system flag, by identity and by signature, tested in that order so that one bundle
// always gets the same reason. Immutable; usable from any thread.
class ProtectedAppGuard {
public:
    // Whether an application with the identifier runs now.
    using RunningAppsProvider = std::function<bool(const QString& bundleIdentifier)>;
    // Stops the application with the identifier, at once when `force`; true when it ended.
    // May throw.
    using ProcessTerminator = std::function<bool(const QString& bundleIdentifier, bool force)>;

    struct Options {
        std::shared_ptr<const FileManager> fileManager;
        RunningAppsProvider runningAppsProvider;                        // absent: the platform's running applications
        ProcessTerminator processTerminator;                            // absent: the platform's termination
        std::shared_ptr<const RunningApplications> runningApplications; // absent: the platform's
        std::optional<QStringList> protectedPathPrefixes;               // absent: the system's
    };

    // The system folders no application inside may leave, compared in this order.
    [[nodiscard]] static const QStringList& defaultProtectedPathPrefixes();
    // The identifiers of the operating system's own applications.
    [[nodiscard]] static bool isCoreAppleBundleIdentifier(const QString& bundleIdentifier);

    // Flatpak and Snap applications are removed with their own tools, never by moving their
    // files; their data may still be swept.
    [[nodiscard]] static ProtectionEvaluation flatpakProtection(const QString& applicationId, bool userInstallation);
    [[nodiscard]] static ProtectionEvaluation snapProtection(const QString& snapName);

    explicit ProtectedAppGuard(Options options = {});

    // The bundle's signature; a bundle without a readable one reports `unsignedCode`.
    [[nodiscard]] CodeSignatureReport inspectCodeSignature(const QString& bundlePath) const;
    // The report for what the signing service said, or for no signature at all.
    [[nodiscard]] static CodeSignatureReport report(const std::optional<SigningInformation>& information);

    // The verdict; without a report the bundle's own signature is read when the rules reach it.
    [[nodiscard]] ProtectionEvaluation
    evaluateProtection(const QString& bundlePath, const QString& bundleIdentifier,
                       const std::optional<CodeSignatureReport>& codeSignature = {}) const;
    // The same test, giving the reason when the application is protected and nothing otherwise.
    [[nodiscard]] std::optional<QString>
    evaluateSystemProtection(const QString& bundlePath, const QString& bundleIdentifier,
                             const std::optional<CodeSignatureReport>& codeSignature = {}) const;

    // Throws UninstallerError when the application is protected or running.
    void validateUninstall(const InstalledApp& app) const;
    [[nodiscard]] bool isRunning(const QString& bundleIdentifier) const;
    // Stops every running application with the identifier: asked to quit, then, when one still
    // runs after three seconds, ended by force for three more. True when none runs any more;
    // throws UninstallerError::applicationRunning when one outlives the forced end, or when the
    // terminator given at construction answers false.
    bool terminate(const QString& bundleIdentifier, bool force) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
    RunningAppsProvider m_runningAppsProvider;
    ProcessTerminator m_processTerminator;
    std::shared_ptr<const RunningApplications> m_runningApplications;
    QStringList m_protectedPathPrefixes;
};

} // namespace kestrow
