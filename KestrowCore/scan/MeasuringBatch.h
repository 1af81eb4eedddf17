#pragma once

#include "platform/WalkCrew.h"
#include "scan/ItemMeasurer.h"

#include <QString>

#include <cstddef>
#include <deque>
#include <memory>
#include <stop_token>

namespace kestrow {

// Locations measured side by side on the threads the measurer allows: each is walked whole by
// the first thread that is free, several at once, and a thread left with nothing to start helps
// with the folders of the others. So a scan of many locations keeps every thread busy to its
// end instead of meeting at the end of each location. The thread that takes the results walks
// too while it waits.
class MeasuringBatch {
public:
    MeasuringBatch(const ItemMeasurer& measurer, std::stop_token stop);
    ~MeasuringBatch();
    MeasuringBatch(const MeasuringBatch&) = delete;
    MeasuringBatch& operator=(const MeasuringBatch&) = delete;

    // Starts measuring `path`; gives the number to take it by.
    std::size_t add(const QString& path);
    // Whether the measurement `index` is ready to be taken without waiting.
    [[nodiscard]] bool isReady(std::size_t index);
    // The measurement `index`, once; waits for it. Cut short by a stop, it measures less.
    [[nodiscard]] MeasuredMetrics take(std::size_t index);

private:
    class Measurement;

    const ItemMeasurer& m_measurer;
    std::deque<std::unique_ptr<Measurement>> m_measurements; // before the crew, whose threads use them
    WalkCrew m_crew;
};

} // namespace kestrow
