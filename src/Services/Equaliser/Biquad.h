#pragma once

// No include here: see StaggeredCascade.h.

namespace navorin::EqTap {

/// A second-order section in direct form I, with its memory. The denominator's leading coefficient is 1.
struct Biquad
{
    float b0 = 0, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    float x1 = 0, x2 = 0; ///< the last two inputs
    float y1 = 0, y2 = 0; ///< the last two outputs

    /// A peaking filter of the bandwidth that all bands share, with empty memory: `gain` decibels at `centre`
    /// hertz. The formulas are those of the Audio EQ Cookbook (R. Bristow-Johnson), in double precision until
    /// the five coefficients are stored. Rates at or below 8000 frames per second count as 8000; a centre
    /// above half the rate is computed like any other.
    [[nodiscard]] static Biquad peaking(double centre, float gain, double sampleRate);

    /// The sum is taken left to right in single precision; every faster path gives these very bits.
    float process(float x)
    {
        const float y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        return y;
    }

    /// Empties the memory and keeps the coefficients.
    void reset() { x1 = x2 = y1 = y2 = 0; }

    bool operator==(const Biquad &) const = default;
};

} // namespace navorin::EqTap
