#include "Services/Equaliser/StaggeredCascade.h"

namespace navorin::EqTap {
namespace {

using Four = float __attribute__((vector_size(16)));
using FourMask = int __attribute__((vector_size(16)));

/// Four lanes and the fifth by itself.
struct Lanes
{
    struct Mask
    {
        FourMask four;
        bool fifth;
    };
    static constexpr unsigned size = sectionCount;

    Four four = {};
    float fifth = 0;

    static Lanes load(const float *p) { return {Four{p[0], p[1], p[2], p[3]}, p[4]}; }
    void store(float *p) const
    {
        for (unsigned k = 0; k < 4; ++k)
            p[k] = four[k];
        p[4] = fifth;
    }

    friend Lanes operator+(Lanes a, Lanes b) { return {a.four + b.four, a.fifth + b.fifth}; }
    friend Lanes operator-(Lanes a, Lanes b) { return {a.four - b.four, a.fifth - b.fifth}; }
    friend Lanes operator*(Lanes a, Lanes b) { return {a.four * b.four, a.fifth * b.fifth}; }

    Lanes rotated() const { return {__builtin_shufflevector(Four{fifth}, four, 0, 4, 5, 6), four[3]}; }
    float first() const { return four[0]; }
    Lanes withFirst(float x) const { return {__builtin_shufflevector(Four{x}, four, 0, 5, 6, 7), fifth}; }

    static Mask between(unsigned from, unsigned to)
    {
        const FourMask lane = {0, 1, 2, 3};
        return {lane >= int(from) && lane < int(to), from <= 4 && 4 < to};
    }
    static Lanes select(Mask mask, Lanes a, Lanes b)
    {
        return {mask.four ? a.four : b.four, mask.fifth ? a.fifth : b.fifth};
    }
};

} // namespace

void filterPortable(Biquad *sections, float *samples, size_t channels, size_t stride, size_t count)
{
    filterStaggered<Lanes>(sections, samples, channels, stride, count);
}

} // namespace navorin::EqTap
