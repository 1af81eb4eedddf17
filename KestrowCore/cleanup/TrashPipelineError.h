#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// Why a pipeline run could not start. Only `unconfirmedPermanentPurge` and `emptyTargetList`
// are ever thrown, and only before any item is touched; the other cases name per-item
// trouble for callers, while the pipeline itself reports that in its records.
class TrashPipelineError : public KestrowError {
public:
    enum class Case {
        sandboxViolation,
        itemNotFound,
        itemLockedOrPermissionDenied,
        underlyingError,
        unconfirmedPermanentPurge,
        emptyTargetList,
    };

    [[nodiscard]] static TrashPipelineError sandboxViolation(QString detail);
    [[nodiscard]] static TrashPipelineError itemNotFound(QString detail);
    [[nodiscard]] static TrashPipelineError itemLockedOrPermissionDenied(QString detail);
    [[nodiscard]] static TrashPipelineError underlyingError(QString detail);
    [[nodiscard]] static TrashPipelineError unconfirmedPermanentPurge();
    [[nodiscard]] static TrashPipelineError emptyTargetList();

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] const QString& detail() const { return m_detail; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const TrashPipelineError& a, const TrashPipelineError& b)
    {
        return a.m_case == b.m_case && a.m_detail == b.m_detail;
    }

private:
    TrashPipelineError(Case kind, QString detail = {});

    Case m_case;
    QString m_detail;
};

} // namespace kestrow
