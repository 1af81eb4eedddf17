#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why a launch item could not be turned on or off. Nothing was changed when it is thrown,
// except as `fileOperationFailed` says for the one file it names.
class StartupError : public KestrowError {
public:
    enum class Case { fileOperationFailed, commandFailed, administratorRequired };

    // A file could not be read, written, moved or removed; `reason` is the system's text.
    [[nodiscard]] static StartupError fileOperationFailed(QString path, QString reason);
    // A command that changes the state ran and refused; `output` is what it said.
    [[nodiscard]] static StartupError commandFailed(QString commandLine, QString output);
    // Only an administrator may change this item; `commandLine` is what they would run.
    [[nodiscard]] static StartupError administratorRequired(QString item, QString commandLine);

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] QString description() const override;

private:
    StartupError(Case kind, QString subject, QString detail);

    Case m_case;
    QString m_subject;
    QString m_detail;
};

} // namespace kestrow
