#include "Services/Story/RowKernels.h"

#ifdef __AVX2__

#include <immintrin.h>

namespace navorin {
namespace {

/// Eight pairs of neighbours at a time, each fetched as one word.
void sampleRowAvx2(const uint16_t *row, RowTaps taps, uint8_t *target)
{
    const auto half = _mm256_set1_epi32(tapSteps * tapSteps / 2);
    const auto firstBytes = _mm256_setr_epi8(0, 4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 0,
                                             4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    for (size_t i = 0; i < taps.count; i += 8) {
        const auto index = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(taps.index + i));
        const auto weights = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(taps.weights + i));
        const auto pairs =
            _mm256_i32gather_epi32(reinterpret_cast<const int *>(row), index, sizeof(uint16_t));
        const auto sum = _mm256_add_epi32(_mm256_madd_epi16(pairs, weights), half);
        const auto bytes = _mm256_shuffle_epi8(_mm256_srli_epi32(sum, 14), firstBytes);
        const auto low = uint32_t(_mm256_extract_epi32(bytes, 0));
        const auto high = uint32_t(_mm256_extract_epi32(bytes, 4));
        const uint64_t eight = low | uint64_t(high) << 32;
        __builtin_memcpy(target + i, &eight, sizeof eight);
    }
}

} // namespace

SampleKernel avx2SampleKernel()
{
    return __builtin_cpu_supports("avx2") ? sampleRowAvx2 : nullptr;
}

} // namespace navorin

#else

namespace navorin {

SampleKernel avx2SampleKernel()
{
    return nullptr;
}

} // namespace navorin

#endif
