#include "support/ByteCountFormatter.h"

#include <array>
#include <cstdlib>

namespace kestrow {

namespace {

struct Unit {
    const char* name;
    int fractionDigits;
};

// KB without decimals, MB with one, larger units with two; trailing zeros are dropped.
// A signed 64-bit count ends in exabytes.
constexpr std::array<Unit, 6> units{{{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}, {"EB", 2}}};

QString groupThousands(unsigned long long whole)
{
    QString digits = QString::number(whole);
    for (qsizetype at = digits.size() - 3; at > 0; at -= 3)
        digits.insert(at, QLatin1Char(','));
    return digits;
}

} // namespace

QString ByteCountFormatter::format(std::int64_t bytes)
{
    if (bytes == 0)
        return QStringLiteral("Zero KB");
    const bool negative = bytes < 0;
    // Work in unsigned integers so that rounding is exact and INT64_MIN has a magnitude.
    const unsigned long long magnitude =
        negative ? 0ULL - static_cast<unsigned long long>(bytes) : static_cast<unsigned long long>(bytes);
    const QString sign = negative ? QStringLiteral("-") : QString();
    if (magnitude < 1000)
        return sign + QString::number(magnitude) +
               (magnitude == 1 ? QStringLiteral(" byte") : QStringLiteral(" bytes"));

    unsigned long long divisor = 1000;
    for (size_t u = 0; u < units.size(); ++u) {
        unsigned long long scale = 1;
        for (int i = 0; i < units[u].fractionDigits; ++i)
            scale *= 10;
        // Rounded value in units of 10^-digits, half away from zero, computed without overflow.
        const unsigned long long step = divisor / scale;
        const unsigned long long scaled = magnitude / step + ((magnitude % step) * 2 >= step ? 1 : 0);
        const bool lastUnit = u + 1 == units.size();
        if (scaled >= 1000 * scale && !lastUnit) {
            divisor *= 1000;
            continue;
        }
        unsigned long long whole = scaled / scale;
        unsigned long long fraction = scaled % scale;
        int digits = units[u].fractionDigits;
        while (digits > 0 && fraction % 10 == 0) {
            fraction /= 10;
            --digits;
        }
        QString text = groupThousands(whole);
        if (digits > 0)
            text += QLatin1Char('.') + QString::number(fraction).rightJustified(digits, QLatin1Char('0'));
        return sign + text + QLatin1Char(' ') + QLatin1String(units[u].name);
    }
    return {};
}

} // namespace kestrow
