// SSE2 row kernels: four 32-bit pixels (or sixteen grey bytes) at a time, unpacked to
// 16-bit lanes, multiplied, shifted right by 8 and packed again. Every product fits in 16
// bits (255 * 255), so the lanes give exactly the bytes of the scalar formulas; tails run
// through the same scalar code as the generic blitter. Only this file's functions use
// SSE2, each through its own target attribute, so nothing here leaks into other code.
#include <emmintrin.h>

#include "FrameWork/_cult/Source/clt_BlitKernels.h"

#define CLT_SSE2 __attribute__((target("sse2")))

namespace
{
CLT_SSE2 inline __m128i Mix16(int mode, __m128i s, __m128i d, __m128i a)
{
    const __m128i k255 = _mm_set1_epi16(255);
    // Normal: s*a + d*(255-a) = (s-d)*a + 256d - d. The lanes wrap, but the true sum lies
    // in 0..65025, so the wrapped result is exact, with one multiplication instead of two.
    if (mode == 0)
        return _mm_srli_epi16(
            _mm_sub_epi16(
                _mm_add_epi16(_mm_mullo_epi16(_mm_sub_epi16(s, d), a), _mm_slli_epi16(d, 8)), d),
            8);
    __m128i t = _mm_srli_epi16(_mm_mullo_epi16(s, a), 8);
    return _mm_sub_epi16(
        k255, _mm_srli_epi16(_mm_mullo_epi16(_mm_sub_epi16(k255, t), _mm_sub_epi16(k255, d)), 8));
}

// Keeps the destination where keep is set, the blend elsewhere.
CLT_SSE2 inline __m128i Select(__m128i keep, __m128i d, __m128i r)
{
    return _mm_or_si128(_mm_and_si128(keep, d), _mm_andnot_si128(keep, r));
}

CLT_SSE2 inline __m128i Load(const uint8_t* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
CLT_SSE2 inline void Store(uint8_t* p, __m128i v)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
}

CLT_SSE2 void AlphaRow(int mode, uint8_t* d, const uint8_t* s, int32_t n)
{
    const __m128i z = _mm_setzero_si128(), alphaByte = _mm_set1_epi32(int(0xFF000000));
    int32_t i = 0;
    for (; i + 4 <= n; i += 4, d += 16, s += 16)
    {
        __m128i sv = Load(s), dv = Load(d);
        __m128i alpha = _mm_and_si128(sv, alphaByte);
        __m128i zeroAlpha = _mm_cmpeq_epi32(alpha, z);
        if (_mm_movemask_epi8(zeroAlpha) == 0xFFFF) continue;
        // Opaque in normal mode: (s * 255) >> 8 is s - 1, or 0 for 0.
        if (mode == 0 && _mm_movemask_epi8(_mm_cmpeq_epi32(alpha, alphaByte)) == 0xFFFF)
        {
            Store(d, Select(alphaByte, dv, _mm_subs_epu8(sv, _mm_set1_epi8(1))));
            continue;
        }
        __m128i sl = _mm_unpacklo_epi8(sv, z), sh = _mm_unpackhi_epi8(sv, z);
        __m128i al = _mm_shufflehi_epi16(_mm_shufflelo_epi16(sl, 0xFF), 0xFF);
        __m128i ah = _mm_shufflehi_epi16(_mm_shufflelo_epi16(sh, 0xFF), 0xFF);
        __m128i r = _mm_packus_epi16(Mix16(mode, sl, _mm_unpacklo_epi8(dv, z), al),
                                     Mix16(mode, sh, _mm_unpackhi_epi8(dv, z), ah));
        Store(d, Select(_mm_or_si128(zeroAlpha, alphaByte), dv, r));
    }
    clt_blit::AlphaRow(mode, d, s, n - i);
}

CLT_SSE2 void BlendRow(int mode, uint8_t* d, const uint8_t* s, int32_t n, uint8_t amount)
{
    const __m128i z = _mm_setzero_si128(), alphaByte = _mm_set1_epi32(int(0xFF000000));
    const __m128i a = _mm_set1_epi16(amount);
    int32_t i = 0;
    for (; i + 4 <= n; i += 4, d += 16, s += 16)
    {
        __m128i sv = Load(s), dv = Load(d);
        __m128i r =
            _mm_packus_epi16(Mix16(mode, _mm_unpacklo_epi8(sv, z), _mm_unpacklo_epi8(dv, z), a),
                             Mix16(mode, _mm_unpackhi_epi8(sv, z), _mm_unpackhi_epi8(dv, z), a));
        Store(d, Select(alphaByte, dv, r));
    }
    clt_blit::BlendRow(mode, d, s, n - i, amount);
}

CLT_SSE2 void TintRow(int mode, uint8_t* d, const uint8_t* m, int32_t n, const uint8_t c[3])
{
    const __m128i z = _mm_setzero_si128(), alphaByte = _mm_set1_epi32(int(0xFF000000));
    const __m128i colour = _mm_setr_epi16(c[0], c[1], c[2], 0, c[0], c[1], c[2], 0);
    int32_t i = 0;
    for (; i + 4 <= n; i += 4, d += 16, m += 4)
    {
        uint32_t four;
        memcpy(&four, m, 4);
        if (four == 0) continue;
        __m128i mv = _mm_cvtsi32_si128(int(four));
        mv = _mm_unpacklo_epi8(mv, mv);
        mv = _mm_unpacklo_epi16(mv, mv); // each mask byte repeated over its pixel's 4 bytes
        __m128i dv = Load(d);
        __m128i r = _mm_packus_epi16(
            Mix16(mode, colour, _mm_unpacklo_epi8(dv, z), _mm_unpacklo_epi8(mv, z)),
            Mix16(mode, colour, _mm_unpackhi_epi8(dv, z), _mm_unpackhi_epi8(mv, z)));
        Store(d, Select(_mm_or_si128(_mm_cmpeq_epi32(mv, z), alphaByte), dv, r));
    }
    clt_blit::TintRow(mode, d, m, n - i, c);
}

CLT_SSE2 void KeyRow(uint8_t* d, const uint8_t* s, int32_t n, uint32_t key)
{
    const __m128i k = _mm_set1_epi32(int(key));
    int32_t i = 0;
    for (; i + 4 <= n; i += 4, d += 16, s += 16)
    {
        __m128i sv = Load(s);
        Store(d, Select(_mm_cmpeq_epi32(sv, k), Load(d), sv));
    }
    clt_blit::KeyRow(d, s, n - i, key);
}

CLT_SSE2 inline __m128i PairSums(__m128i v)
{
    return _mm_add_epi16(_mm_and_si128(v, _mm_set1_epi16(0xFF)), _mm_srli_epi16(v, 8));
}

CLT_SSE2 inline __m128i HalveLanes(int mode, __m128i sum)
{
    if (mode == 0) return _mm_srli_epi16(sum, 2);
    return _mm_and_si128(_mm_cmpgt_epi16(sum, _mm_setzero_si128()), _mm_set1_epi16(0xFF));
}

CLT_SSE2 void HalveRow(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
{
    int32_t x = 0;
    for (; x + 16 <= n; x += 16)
    {
        const uint8_t *a = s0 + 2 * x, *b = s1 + 2 * x;
        __m128i lo = _mm_add_epi16(PairSums(Load(a)), PairSums(Load(b)));
        __m128i hi = _mm_add_epi16(PairSums(Load(a + 16)), PairSums(Load(b + 16)));
        Store(d + x, _mm_packus_epi16(HalveLanes(mode, lo), HalveLanes(mode, hi)));
    }
    clt_blit::MmxHalveRow(mode, d + x, s0 + 2 * x, s1 + 2 * x, n - x);
}
} // namespace

extern const CltBlitKernels g_Sse2Kernels = {AlphaRow, BlendRow, TintRow,
                                             KeyRow,   HalveRow, nullptr};
