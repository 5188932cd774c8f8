#pragma once

// For the sources that are compiled for one instruction set each. Everything here is instantiated with a type
// that is private to such a source, so that no code for a richer processor can take the place of its namesake
// elsewhere; for the same reason no header of the C++ library may join.

#include "Services/Equaliser/CascadeKernels.h"

namespace navorin::EqTap {

inline constexpr size_t stagger = 3;
/// How many steps after its coming a sample leaves.
inline constexpr size_t staggerDelay = stagger * sectionCount;

/// The sections of one channel side by side, one in each lane of a vector, so that all of them advance in one
/// step.
///
/// A section needs the output of the one before it. Lane k therefore works on the sample that lies 3k behind
/// that of lane 0: what it takes in left lane k - 1 three steps ago, and nothing but a section's feedback to
/// itself is waited for. At either end of a block some lanes have nothing to do; a mask holds them back, so
/// that blocks join without a seam.
///
/// `Lanes` has the operators +, - and * and these:
///   load(p), store(p)       lane k from and to p[k], `Lanes::size` floats in all
///   rotated()               the lanes moved up by one, the last section's in lane 0
///   first(), withFirst(x)   lane 0; the same lanes but x in lane 0
///   Mask, between(from, to) set in the lanes from `from` to before `to`
///   select(mask, a, b)      a where the mask is set, else b
template <class Lanes>
struct StaggeredCascade
{
    Lanes b0, b1, b2, a1, a2;
    Lanes x1, x2, y1, y2;
    Lanes out1, out2, out3; ///< what the lanes gave in the last three steps, busy or not

    explicit StaggeredCascade(const Biquad *sections)
        : b0(gather(sections, &Biquad::b0))
        , b1(gather(sections, &Biquad::b1))
        , b2(gather(sections, &Biquad::b2))
        , a1(gather(sections, &Biquad::a1))
        , a2(gather(sections, &Biquad::a2))
        , x1(gather(sections, &Biquad::x1))
        , x2(gather(sections, &Biquad::x2))
        , y1(gather(sections, &Biquad::y1))
        , y2(gather(sections, &Biquad::y2))
        , out1{}
        , out2{}
        , out3{}
    {
    }

    void saveMemory(Biquad *sections) const
    {
        scatter(x1, sections, &Biquad::x1);
        scatter(x2, sections, &Biquad::x2);
        scatter(y1, sections, &Biquad::y1);
        scatter(y2, sections, &Biquad::y2);
    }

    /// Step `at` of a block of `count` samples, `at` from 0 to before `count + staggerDelay`.
    void step(float *samples, size_t stride, size_t count, size_t at)
    {
        const Lanes rotated = out3.rotated();
        if (at >= staggerDelay)
            samples[(at - staggerDelay) * stride] = rotated.first();
        const Lanes x = rotated.withFirst(at < count ? samples[at * stride] : 0.0F);
        const Lanes y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        const auto busy = Lanes::between(lanesPast(count, at), lanesPast(0, at));
        x2 = Lanes::select(busy, x1, x2);
        x1 = Lanes::select(busy, x, x1);
        y2 = Lanes::select(busy, y1, y2);
        y1 = Lanes::select(busy, y, y1);
        out3 = out2;
        out2 = out1;
        out1 = y;
    }

private:
    /// How many lanes are at their sample number `sample` or past it.
    static unsigned lanesPast(size_t sample, size_t at)
    {
        if (at < sample)
            return 0;
        const size_t lanes = (at - sample) / stagger + 1;
        return lanes < sectionCount ? unsigned(lanes) : sectionCount;
    }

    static Lanes gather(const Biquad *sections, float Biquad::*field)
    {
        float lanes[Lanes::size] = {};
        for (unsigned k = 0; k < sectionCount; ++k)
            lanes[k] = sections[k].*field;
        return Lanes::load(lanes);
    }

    static void scatter(const Lanes &from, Biquad *sections, float Biquad::*field)
    {
        float lanes[Lanes::size];
        from.store(lanes);
        for (unsigned k = 0; k < sectionCount; ++k)
            sections[k].*field = lanes[k];
    }
};

/// The memory of a cascade while all its lanes are busy. The registers take turns, so that nothing is moved.
template <class Lanes>
struct BusyCascade
{
    const StaggeredCascade<Lanes> &cascade;
    Lanes x[3], y[3];

    [[gnu::always_inline]] inline explicit BusyCascade(const StaggeredCascade<Lanes> &cascade_)
        : cascade(cascade_)
        , x{{}, cascade.x2, cascade.x1}
        , y{cascade.out3, cascade.y2, cascade.y1}
    {
    }

    [[gnu::always_inline]] inline void saveTo(StaggeredCascade<Lanes> &to) const
    {
        to.x1 = x[2];
        to.x2 = x[1];
        to.y1 = to.out1 = y[2];
        to.y2 = to.out2 = y[1];
        to.out3 = y[0];
    }

    template <unsigned Turn>
    [[gnu::always_inline]] inline void step(float *in, float *out)
    {
        constexpr unsigned now = Turn, last = (Turn + 2) % 3, beforeLast = (Turn + 1) % 3;
        const Lanes rotated = y[now].rotated();
        *out = rotated.first();
        x[now] = rotated.withFirst(*in);
        y[now] = cascade.b0 * x[now] + cascade.b1 * x[last] + cascade.b2 * x[beforeLast] -
                 cascade.a1 * y[last] - cascade.a2 * y[beforeLast];
    }
};

/// Does `rounds` times three steps, from step `at` on, in which all lanes of both channels are busy. A
/// function of its own, with nothing else in it that would want a register.
template <class Lanes>
[[gnu::noinline]] void filterBusy(StaggeredCascade<Lanes> &left, StaggeredCascade<Lanes> &right, float *in,
                                  size_t stride, size_t rounds)
{
    BusyCascade<Lanes> l(left), r(right);
    float *out = in - staggerDelay * stride;
    for (; rounds > 0; --rounds) {
        l.template step<0>(in, out);
        r.template step<0>(in + 1, out + 1);
        in += stride;
        out += stride;
        l.template step<1>(in, out);
        r.template step<1>(in + 1, out + 1);
        in += stride;
        out += stride;
        l.template step<2>(in, out);
        r.template step<2>(in + 1, out + 1);
        in += stride;
        out += stride;
    }
    l.saveTo(left);
    r.saveTo(right);
}

template <class Lanes>
[[gnu::noinline]] void filterBusy(StaggeredCascade<Lanes> &only, float *in, size_t stride, size_t rounds)
{
    BusyCascade<Lanes> busy(only);
    float *out = in - staggerDelay * stride;
    for (; rounds > 0; --rounds) {
        busy.template step<0>(in, out);
        busy.template step<1>(in + stride, out + stride);
        busy.template step<2>(in + 2 * stride, out + 2 * stride);
        in += 3 * stride;
        out += 3 * stride;
    }
    busy.saveTo(only);
}

/// One block of a channel, or of two neighbours, which fill each other's waiting times.
template <class... Cascades>
void filterBlock(float *samples, size_t stride, size_t count, Cascades &...cascades)
{
    const auto step = [&](size_t at) {
        float *channel = samples;
        (cascades.step(channel++, stride, count, at), ...);
    };
    size_t at = 0;
    for (; at < staggerDelay; ++at)
        step(at);
    if (count >= staggerDelay + stagger) {
        const size_t rounds = (count - staggerDelay) / stagger;
        filterBusy(cascades..., samples + at * stride, stride, rounds);
        at += rounds * stagger;
    }
    for (; at < count + staggerDelay; ++at)
        step(at);
}

template <class Lanes>
void filterStaggered(Biquad *sections, float *samples, size_t channels, size_t stride, size_t count)
{
    using Cascade = StaggeredCascade<Lanes>;
    for (; channels >= 2; channels -= 2, sections += size_t{2} * sectionCount, samples += 2) {
        Cascade left(sections), right(sections + sectionCount);
        filterBlock(samples, stride, count, left, right);
        left.saveMemory(sections);
        right.saveMemory(sections + sectionCount);
    }
    if (channels == 1) {
        Cascade only(sections);
        filterBlock(samples, stride, count, only);
        only.saveMemory(sections);
    }
}

} // namespace navorin::EqTap
