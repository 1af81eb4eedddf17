#pragma once

namespace kestrow {

// A cubic Bézier timing curve from (0, 0) to (1, 1) through two control points, as animation
// systems define them: it maps the elapsed fraction of an animation to its progress.
class TimingCurve {
public:
    constexpr TimingCurve(double x1, double y1, double x2, double y2)
        : m_x1(x1)
        , m_y1(y1)
        , m_x2(x2)
        , m_y2(y2)
    {
    }

    // `fraction` is limited to 0...1.
    [[nodiscard]] double valueAt(double fraction) const;

private:
    [[nodiscard]] double parameterFor(double x) const;

    double m_x1;
    double m_y1;
    double m_x2;
    double m_y2;
};

} // namespace kestrow
