#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why an uninstall was refused. `pipelineFailure` and `deletionFailed` name trouble for
// callers; the uninstaller itself passes the pipeline's errors on unchanged and reports a
// bundle that could not go as UninstallerError::deletionFailed.
class AppUninstallerError : public KestrowError {
public:
    enum class Case {
        systemAppProtected,
        applicationIsRunning,
        applicationNotFound,
        uninstallationBlocked,
        pipelineFailure,
        deletionFailed,
    };

    [[nodiscard]] static AppUninstallerError systemAppProtected(QString name, QString bundleId);
    [[nodiscard]] static AppUninstallerError applicationIsRunning(QString name, QString bundleId);
    [[nodiscard]] static AppUninstallerError applicationNotFound(QString message);
    [[nodiscard]] static AppUninstallerError uninstallationBlocked(QString reason);
    [[nodiscard]] static AppUninstallerError pipelineFailure(QString message);
    [[nodiscard]] static AppUninstallerError deletionFailed(QString path, QString reason);

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] QString description() const override;

private:
    AppUninstallerError(Case kind, QString first, QString second = {});

    Case m_case;
    QString m_first; // the payload in the order the case names it
    QString m_second;
};

} // namespace kestrow
