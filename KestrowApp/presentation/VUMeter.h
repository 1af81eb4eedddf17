#pragma once

#include <QString>

namespace kestrow {

// A row of cells lit in proportion to a fraction.
struct VUMeter {
    double percent = 0; // a fraction, 0 to 1
    int cells = 20;

    [[nodiscard]] int litCells() const;
    // The rounded percentage and a percent sign.
    [[nodiscard]] QString percentText() const;
};

} // namespace kestrow
