#pragma once

#include <QString>

#include <cstdint>

namespace kestrow {

// How sizes become text on the screens.
class Theme {
public:
    // Whole decimal gigabytes, rounded half away from zero; "<1" for a size that rounds to none.
    [[nodiscard]] static QString legendGB(double bytes);
    // The file-style byte text used everywhere but the legend.
    [[nodiscard]] static QString byteText(std::int64_t bytes);
    // Whole decimal gigabytes, rounded.
    [[nodiscard]] static std::int64_t wholeGB(std::int64_t bytes);
};

} // namespace kestrow
