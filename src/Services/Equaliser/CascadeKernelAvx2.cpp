#include "Services/Equaliser/StaggeredCascade.h"

#ifdef __AVX2__

#include <immintrin.h>

namespace navorin::EqTap {
namespace {

struct Lanes
{
    using Mask = __m256;
    static constexpr unsigned size = 8;

    __m256 v = _mm256_setzero_ps();

    static Lanes load(const float *p) { return {_mm256_loadu_ps(p)}; }
    void store(float *p) const { _mm256_storeu_ps(p, v); }

    friend Lanes operator+(Lanes a, Lanes b) { return {_mm256_add_ps(a.v, b.v)}; }
    friend Lanes operator-(Lanes a, Lanes b) { return {_mm256_sub_ps(a.v, b.v)}; }
    friend Lanes operator*(Lanes a, Lanes b) { return {_mm256_mul_ps(a.v, b.v)}; }

    Lanes rotated() const { return {_mm256_permutevar8x32_ps(v, _mm256_setr_epi32(4, 0, 1, 2, 3, 5, 6, 7))}; }
    float first() const { return _mm256_cvtss_f32(v); }
    Lanes withFirst(float x) const { return {_mm256_blend_ps(v, _mm256_castps128_ps256(_mm_set_ss(x)), 1)}; }

    static Mask between(unsigned from, unsigned to)
    {
        const auto lane = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
        const auto below = [lane](unsigned end) {
            return _mm256_cmpgt_epi32(_mm256_set1_epi32(int(end)), lane);
        };
        return _mm256_castsi256_ps(_mm256_andnot_si256(below(from), below(to)));
    }
    static Lanes select(Mask mask, Lanes a, Lanes b) { return {_mm256_blendv_ps(b.v, a.v, mask)}; }
};

} // namespace

CascadeKernel avx2Kernel()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") ? filterStaggered<Lanes> : nullptr;
}

} // namespace navorin::EqTap

#else

navorin::EqTap::CascadeKernel navorin::EqTap::avx2Kernel()
{
    return nullptr;
}

#endif
