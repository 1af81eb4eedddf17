#pragma once

#include "cleanup/TrashItemStatus.h"
#include "storage/MeasuredMetrics.h"
#include "support/JsonValue.h"

#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// What became of one path of a pipeline run. Sizes are measured before anything moves; a
// failed item keeps what was measured, but only freed items count in the totals.
struct TrashItemRecord {
    QUuid id;
    QString sourcePath;               // the item as given
    std::optional<QString> trashPath; // where the Trash put it; only after a move that says so
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    TrashItemStatus status = TrashItemStatus::failed;
    std::optional<QString> errorMessage;

    // A record with a new id and the measured sizes; a logical size of nothing becomes the
    // allocated size, so that no record shows nothing for something that holds space.
    [[nodiscard]] static TrashItemRecord measured(const QString& sourcePath, const MeasuredMetrics& metrics,
                                                  TrashItemStatus status,
                                                  std::optional<QString> trashPath = std::nullopt,
                                                  std::optional<QString> errorMessage = std::nullopt);

    [[nodiscard]] QString sourceURL() const;
    [[nodiscard]] std::optional<QString> trashURL() const;

    // Paths as file URLs beside their path texts; absent fields left out.
    [[nodiscard]] JsonValue toJson() const;

    friend bool operator==(const TrashItemRecord&, const TrashItemRecord&) = default;
};

} // namespace kestrow
