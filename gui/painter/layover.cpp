#include "layover.h"

#include "fourpixels.h"

#include <bit>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr int groupSize = 8;

#if defined(__x86_64__)
// As FourPixels::layOver, with eight pixels in two registers.
__attribute__((target("avx2,bmi"))) void layOverAvx2(const RowOver& row, std::uint64_t groups) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i all = _mm256_set1_epi16(255);
    const __m256i half = _mm256_set1_epi16(128);
    const __m256i alphas = _mm256_set_epi8(-1, 7, -1, 7, -1, 7, -1, 7, -1, 3, -1, 3, -1, 3, -1, 3, //
                                           -1, 7, -1, 7, -1, 7, -1, 7, -1, 3, -1, 3, -1, 3, -1, 3);
    const __m256i highAlphas =
        _mm256_set_epi8(-1, 15, -1, 15, -1, 15, -1, 15, -1, 11, -1, 11, -1, 11, -1, 11, //
                        -1, 15, -1, 15, -1, 15, -1, 15, -1, 11, -1, 11, -1, 11, -1, 11);
    const auto share = [&](const __m256i& products) __attribute__((target("avx2,bmi"), always_inline)) {
        return _mm256_srli_epi16(
            _mm256_add_epi16(_mm256_add_epi16(products, _mm256_srli_epi16(products, 8)), half), 8);
    };
    for (; groups != 0; groups &= groups - 1) {
        const std::ptrdiff_t x = std::countr_zero(groups) * groupSize;
        __builtin_prefetch(row.above + row.aboveAhead + x);
        __builtin_prefetch(row.under + row.underAhead + x, 1);
        auto* const under = reinterpret_cast<__m256i*>(row.under + x);
        const __m256i over = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(row.above + x));
        const __m256i below = _mm256_loadu_si256(under);
        const __m256i low = share(_mm256_mullo_epi16(
            _mm256_unpacklo_epi8(below, zero), _mm256_sub_epi16(all, _mm256_shuffle_epi8(over, alphas))));
        const __m256i high = share(_mm256_mullo_epi16(
            _mm256_unpackhi_epi8(below, zero), _mm256_sub_epi16(all, _mm256_shuffle_epi8(over, highAlphas))));
        _mm256_storeu_si256(under, _mm256_add_epi8(over, _mm256_packus_epi16(low, high)));
    }
}
#endif

} // namespace

void layOverPlain(const RowOver& row, std::uint64_t groups) {
    for (; groups != 0; groups &= groups - 1) {
        const std::ptrdiff_t x = std::countr_zero(groups) * groupSize;
        __builtin_prefetch(row.above + row.aboveAhead + x);
        __builtin_prefetch(row.under + row.underAhead + x, 1);
        FourPixels::layOver(row.under + x, row.above + x);
        FourPixels::layOver(row.under + x + 4, row.above + x + 4);
    }
}

LayOver layOver() {
#if defined(__x86_64__)
    static const LayOver best =
        __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") ? layOverAvx2 : layOverPlain;
    return best;
#else
    return layOverPlain;
#endif
}
