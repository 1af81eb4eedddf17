#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why an application may not, or could not, be uninstalled.
class UninstallerError : public KestrowError {
public:
    enum class Case {
        applicationNotFound,
        bundleInspectionFailed,
        protectedSystemApp,
        applicationRunning,
        uninstallationFailed,
        permissionDenied,
        deletionFailed,
    };

    [[nodiscard]] static UninstallerError applicationNotFound(QString path);
    [[nodiscard]] static UninstallerError bundleInspectionFailed(QString path, QString reason);
    [[nodiscard]] static UninstallerError protectedSystemApp(QString bundleIdentifier, QString path, QString reason);
    [[nodiscard]] static UninstallerError applicationRunning(QString bundleIdentifier, QString name);
    [[nodiscard]] static UninstallerError uninstallationFailed(QString path, QString underlyingError);
    [[nodiscard]] static UninstallerError permissionDenied(QString path);
    [[nodiscard]] static UninstallerError deletionFailed(QString path, QString reason);

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const UninstallerError& a, const UninstallerError& b)
    {
        return a.m_case == b.m_case && a.m_first == b.m_first && a.m_second == b.m_second && a.m_third == b.m_third;
    }

private:
    UninstallerError(Case kind, QString first, QString second = {}, QString third = {});

    Case m_case;
    // The payload in the order the case names it.
    QString m_first;
    QString m_second;
    QString m_third;
};

} // namespace kestrow
