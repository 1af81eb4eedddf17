#include "presentation/Theme.h"

#include "support/ByteCountFormatter.h"

#include <cmath>

namespace kestrow {

QString Theme::legendGB(double bytes)
{
    const long long rounded = std::llround(bytes / 1'000'000'000.0);
    if (bytes > 0 && rounded == 0)
        return QStringLiteral("<1");
    return QString::number(rounded);
}

QString Theme::byteText(std::int64_t bytes)
{
    return ByteCountFormatter::format(bytes);
}

std::int64_t Theme::wholeGB(std::int64_t bytes)
{
    return std::llround(static_cast<double>(bytes) / 1'000'000'000.0);
}

} // namespace kestrow
