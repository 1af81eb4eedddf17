#pragma once

#include "cleanup/TrashSummary.h"

#include <QStringList>

namespace kestrow {

// One restore: its records (in the form of a pipeline run's, each naming the item by its
// place in the Trash, or by its original path when nothing of it is left there) and, for
// each record, where the item came from and goes back to.
struct RestoreRun {
    TrashSummary summary;
    QStringList originalPaths; // one per record, in the same order

    // The summary's form, each record with its `originalPath` and `originalURL` added.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
};

} // namespace kestrow
