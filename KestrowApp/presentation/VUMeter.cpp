#include "presentation/VUMeter.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

int VUMeter::litCells() const
{
    return std::clamp(static_cast<int>(std::lround(percent * cells)), 0, cells);
}

QString VUMeter::percentText() const
{
    return QString::number(std::lround(percent * 100)) + QLatin1Char('%');
}

} // namespace kestrow
