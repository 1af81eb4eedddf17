#pragma once

#include "safety/FileCategory.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow {

// One file or folder of a space map. `children` absent: not listed (a file, a bundle, or a
// folder below the depth, measured whole); empty: listed and empty, or unreadable.
struct SpaceNode {
    QUuid id;
    QString path;
    QString name;
    bool isDirectory = false;
    std::int64_t allocatedSizeBytes = 0;
    std::int64_t logicalSizeBytes = 0;
    std::int64_t itemCount = 0; // regular files represented
    std::optional<QDateTime> lastAccessedDate;
    std::optional<QDateTime> lastModifiedDate;
    std::optional<std::vector<SpaceNode>> children;
    std::optional<FileCategory> fileCategory; // leaves only

    [[nodiscard]] QString url() const;
    // Keys are the field names, in their order; absent optionals are left out.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
};

} // namespace kestrow
