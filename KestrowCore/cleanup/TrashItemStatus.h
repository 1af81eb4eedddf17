#pragma once

#include <QString>

#include <cstddef>

namespace kestrow {

// The outcome of one item of a pipeline run. `skipped` is part of the vocabulary only: the
// pipeline never produces it.
class TrashItemStatus {
public:
    enum class Value { success, simulated, failed, skipped };
    using enum Value;
    static constexpr std::size_t count = 4;

    constexpr TrashItemStatus(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;
    // Moved, deleted, or (in a dry run) checked and measured: what counts as freed.
    [[nodiscard]] constexpr bool countsAsFreed() const { return m_value == success || m_value == simulated; }

private:
    Value m_value;
};

} // namespace kestrow
