#pragma once

#include <QList>

namespace navorin {

/// A spring that starts at rest and is let go towards 1, as a curve that an ordinary animation can follow.
///
/// `response` is the period of the undamped spring in seconds, `damping` the damping ratio, 0 to 1: stiffness
/// (2π/response)², damping 4π·damping/response, mass 1.
struct SpringCurve
{
    double response = 0.4;
    double damping = 0.85;

    /// Milliseconds until it stays within a thousandth of 1.
    [[nodiscard]] int duration() const;
    /// Position at `seconds`: 0 at the start, 1 at rest.
    [[nodiscard]] double position(double seconds) const;
    /// The curve over duration() as cubic Bézier segments: for each, two control points and the end point, x
    /// and y from 0 to 1, as `easing.bezierCurve` takes them.
    [[nodiscard]] QList<double> bezier() const;

private:
    [[nodiscard]] double velocity(double seconds) const;
};

} // namespace navorin
