#pragma once

#include "support/EnumValue.h"

#include <QString>

namespace kestrow {

// The outcome of one item of a pipeline run. `skipped` is part of the vocabulary only: the
// pipeline never produces it.
enum class TrashItemStatusValue { success, simulated, failed, skipped };

class TrashItemStatus : public EnumValue<TrashItemStatus, TrashItemStatusValue, 4> {
public:
    using EnumValue::EnumValue;
    using enum TrashItemStatusValue;

    [[nodiscard]] QString rawValue() const;
    // Moved, deleted, or (in a dry run) checked and measured: what counts as freed.
    [[nodiscard]] constexpr bool countsAsFreed() const { return m_value == success || m_value == simulated; }
};

} // namespace kestrow
