#pragma once

#include "apps/AppScanner.h"
#include "apps/DependencyResolver.h"
#include "apps/InstalledApp.h"
#include "apps/ProtectedAppGuard.h"
#include "apps/UninstallOptions.h"
#include "apps/UninstallSummary.h"
#include "cleanup/AuditLogger.h"
#include "cleanup/TrashPipeline.h"

#include <QString>

#include <functional>
#include <memory>

namespace kestrow {

// Removes one application with everything its footprint holds, in one pipeline run with the
// client "uninstaller"; it deletes nothing itself. Protected applications are refused whatever
// the options say, running ones are stopped only when forced. Holds nothing between calls.
class AppUninstaller {
public:
    struct Options {
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<const TrashPipeline> trashPipeline;           // absent: one on the file manager and home
        std::shared_ptr<AuditLogger> auditLogger;                     // for a pipeline built here
        std::shared_ptr<const DependencyResolver> dependencyResolver; // absent: one on the same
        std::shared_ptr<const AppScanner> appScanner;                 // needed only to uninstall by identifier
        ProtectedAppGuard::RunningAppsProvider runningAppsProvider;
        QString homeURL;                                            // empty: the user's home
        std::shared_ptr<const ProtectedAppGuard> protectedAppGuard; // absent: one on the same
    };

    static inline const QString client = QStringLiteral("uninstaller");

    explicit AppUninstaller(Options options = {});

    // Throws AppUninstallerError, UninstallerError (a termination that failed, a bundle that
    // could not go while the rest of the run stands) or TrashPipelineError.
    UninstallSummary uninstall(const InstalledApp& app, bool dryRun, const UninstallOptions& options) const;
    UninstallSummary uninstall(const QString& bundleIdentifier, bool dryRun, const UninstallOptions& options) const;
    // Throws AppUninstallerError::systemAppProtected: by the record, by the guard's fresh
    // verdict, by a path in /System, or by an Apple identifier outside the home.
    void validateAppProtection(const InstalledApp& app) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const TrashPipeline> m_trashPipeline;
    std::shared_ptr<const DependencyResolver> m_dependencyResolver;
    std::shared_ptr<const AppScanner> m_appScanner;
    ProtectedAppGuard::RunningAppsProvider m_runningAppsProvider;
    QString m_home;
    std::shared_ptr<const ProtectedAppGuard> m_protectedAppGuard;
};

} // namespace kestrow
