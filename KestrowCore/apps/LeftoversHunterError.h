#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// The leftovers hunter's vocabulary for callers. The hunter itself raises none of these: a
// cancelled scan ends with CancellationError, a failing application list with its own error.
class LeftoversHunterError : public KestrowError {
public:
    enum class Case { directoryAccessDenied, underlyingError, scanCancelled };

    [[nodiscard]] static LeftoversHunterError directoryAccessDenied(QString path);
    [[nodiscard]] static LeftoversHunterError underlyingError(QString detail);
    [[nodiscard]] static LeftoversHunterError scanCancelled();

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] QString description() const override;

private:
    LeftoversHunterError(Case kind, QString detail = {});

    Case m_case;
    QString m_detail;
};

} // namespace kestrow
