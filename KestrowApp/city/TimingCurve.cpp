#include "city/TimingCurve.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

namespace {

// One coordinate of the Bézier polynomial with end points 0 and 1, and its derivative.
double coordinate(double t, double p1, double p2)
{
    const double u = 1 - t;
    return 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t;
}

double slope(double t, double p1, double p2)
{
    const double u = 1 - t;
    return 3 * u * u * p1 + 6 * u * t * (p2 - p1) + 3 * t * t * (1 - p2);
}

} // namespace

double TimingCurve::valueAt(double fraction) const
{
    const double x = std::clamp(fraction, 0.0, 1.0);
    return coordinate(parameterFor(x), m_y1, m_y2);
}

double TimingCurve::parameterFor(double x) const
{
    // Newton's method converges in a few steps where the curve is steep enough; bisection
    // finishes the job where the slope is flat. x(t) rises monotonically for control points in 0...1.
    constexpr double tolerance = 1e-7;
    double t = x;
    for (int step = 0; step < 8; ++step) {
        const double error = coordinate(t, m_x1, m_x2) - x;
        if (std::abs(error) < tolerance)
            return t;
        const double d = slope(t, m_x1, m_x2);
        if (std::abs(d) < 1e-6)
            break;
        t = std::clamp(t - error / d, 0.0, 1.0);
    }
    double low = 0;
    double high = 1;
    t = x;
    while (high - low > tolerance) {
        if (coordinate(t, m_x1, m_x2) < x)
            low = t;
        else
            high = t;
        t = (low + high) / 2;
    }
    return t;
}

} // namespace kestrow
