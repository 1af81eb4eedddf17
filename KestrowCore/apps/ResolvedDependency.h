#pragma once

#include "apps/DependencyLocation.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// One item of an application's footprint, measured with hard links counted once across the
// whole footprint.
struct ResolvedDependency {
    QUuid id;
    QString path; // the item's URL in JSON
    DependencyLocation location = DependencyLocation::applicationBundle;
    std::int64_t allocatedSizeBytes = 0;
    std::int64_t logicalSizeBytes = 0;
    std::int64_t fileCount = 0;
    std::optional<QDateTime> lastModifiedDate;
    bool isDirectory = false;
    bool isSymlink = false;

    [[nodiscard]] QString url() const;
    // Keys are the field names; an absent date is left out.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;

    friend bool operator==(const ResolvedDependency&, const ResolvedDependency&) = default;
};

} // namespace kestrow
