#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why a space map could not be built.
class SpaceLensError : public KestrowError {
public:
    enum class Case { noSuchFile };

    SpaceLensError(Case kind, QString path);

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] const QString& path() const { return m_path; }
    // "No such file or directory: " and the path.
    [[nodiscard]] QString description() const override;

private:
    Case m_case;
    QString m_path;
};

} // namespace kestrow
