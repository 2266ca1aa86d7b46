// AVX2 row kernels: eight 32-bit pixels (or thirty-two grey bytes) at a time, the same
// lane arithmetic as the SSE2 kernels on twice the width. Unpacking and packing stay
// within each 128-bit half, so pixels come back in their places; only Halve's pack,
// which interleaves the halves, needs a permute. Tails run through the scalar code.
#include <immintrin.h>

#include "FrameWork/_cult/Source/clt_BlitKernels.h"

#define CLT_AVX2 __attribute__((target("avx2")))

namespace
{
CLT_AVX2 inline __m256i Mix16(int mode, __m256i s, __m256i d, __m256i a)
{
    const __m256i k255 = _mm256_set1_epi16(255);
    // Normal: s*a + d*(255-a) = (s-d)*a + 256d - d. The lanes wrap, but the true sum lies
    // in 0..65025, so the wrapped result is exact, with one multiplication instead of two.
    if (mode == 0)
        return _mm256_srli_epi16(
            _mm256_sub_epi16(_mm256_add_epi16(_mm256_mullo_epi16(_mm256_sub_epi16(s, d), a),
                                              _mm256_slli_epi16(d, 8)),
                             d),
            8);
    __m256i t = _mm256_srli_epi16(_mm256_mullo_epi16(s, a), 8);
    return _mm256_sub_epi16(
        k255, _mm256_srli_epi16(
                  _mm256_mullo_epi16(_mm256_sub_epi16(k255, t), _mm256_sub_epi16(k255, d)), 8));
}

CLT_AVX2 inline __m256i Select(__m256i keep, __m256i d, __m256i r)
{
    return _mm256_blendv_epi8(r, d, keep);
}

CLT_AVX2 inline __m256i Load(const uint8_t* p)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
CLT_AVX2 inline void Store(uint8_t* p, __m256i v)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
}

// Eight pixels of any alpha: pixels of alpha 0 are left whole; the others' alpha bytes take
// what the blend leaves there, which nothing shows.
CLT_AVX2 inline void AlphaEight(int mode, uint8_t* d, __m256i sv)
{
    const __m256i z = _mm256_setzero_si256(), alphaByte = _mm256_set1_epi32(int(0xFF000000));
    // Each pixel's alpha byte repeated over its four 16-bit lanes.
    const __m256i spread = _mm256_setr_epi8(3, -1, 3, -1, 3, -1, 3, -1, 7, -1, 7, -1, 7, -1, 7, -1,
                                            3, -1, 3, -1, 3, -1, 3, -1, 7, -1, 7, -1, 7, -1, 7, -1);
    const __m256i spreadHi = _mm256_add_epi8(spread, _mm256_set1_epi16(8));
    __m256i dv = Load(d);
    __m256i zeroAlpha = _mm256_cmpeq_epi32(_mm256_and_si256(sv, alphaByte), z);
    __m256i r =
        _mm256_packus_epi16(Mix16(mode, _mm256_unpacklo_epi8(sv, z), _mm256_unpacklo_epi8(dv, z),
                                  _mm256_shuffle_epi8(sv, spread)),
                            Mix16(mode, _mm256_unpackhi_epi8(sv, z), _mm256_unpackhi_epi8(dv, z),
                                  _mm256_shuffle_epi8(sv, spreadHi)));
    Store(d, Select(zeroAlpha, dv, r));
}

// Opaque pixels in normal mode: (s * 255) >> 8 is s - 1, or 0 for 0; the source's alpha
// byte of 255 goes with them.
CLT_AVX2 inline __m256i OpaqueEight(__m256i sv)
{
    return _mm256_subs_epu8(sv, _mm256_set1_epi32(0x00010101));
}

// Skin pictures are mostly runs of opaque pixels and of transparent ones, which are left
// out: sixteen, then eight pixels are tested at a time for those.
CLT_AVX2 inline bool PlainEight(int mode, uint8_t* d, __m256i sv)
{
    const __m256i alphaByte = _mm256_set1_epi32(int(0xFF000000));
    if (_mm256_testz_si256(sv, alphaByte)) return true;
    if (mode != 0 || !_mm256_testc_si256(sv, alphaByte)) return false;
    Store(d, OpaqueEight(sv));
    return true;
}

template <int kMode> CLT_AVX2 void AlphaRows(uint8_t* d, const uint8_t* s, int32_t n)
{
    const __m256i alphaByte = _mm256_set1_epi32(int(0xFF000000));
    int32_t i = 0;
    for (; i + 16 <= n; i += 16, d += 64, s += 64)
    {
        __m256i s0 = Load(s), s1 = Load(s + 32);
        if (kMode == 0 && _mm256_testc_si256(_mm256_and_si256(s0, s1), alphaByte))
        {
            Store(d, OpaqueEight(s0));
            Store(d + 32, OpaqueEight(s1));
            continue;
        }
        if (!PlainEight(kMode, d, s0)) AlphaEight(kMode, d, s0);
        if (!PlainEight(kMode, d + 32, s1)) AlphaEight(kMode, d + 32, s1);
    }
    for (; i + 8 <= n; i += 8, d += 32, s += 32)
    {
        __m256i sv = Load(s);
        if (!PlainEight(kMode, d, sv)) AlphaEight(kMode, d, sv);
    }
    clt_blit::AlphaRow(kMode, d, s, n - i);
}

CLT_AVX2 void AlphaRow(int mode, uint8_t* d, const uint8_t* s, int32_t n)
{
    mode == 0 ? AlphaRows<0>(d, s, n) : AlphaRows<1>(d, s, n);
}

CLT_AVX2 void BlendRow(int mode, uint8_t* d, const uint8_t* s, int32_t n, uint8_t amount)
{
    const __m256i z = _mm256_setzero_si256(), alphaByte = _mm256_set1_epi32(int(0xFF000000));
    const __m256i a = _mm256_set1_epi16(amount);
    int32_t i = 0;
    for (; i + 8 <= n; i += 8, d += 32, s += 32)
    {
        __m256i sv = Load(s), dv = Load(d);
        __m256i r = _mm256_packus_epi16(
            Mix16(mode, _mm256_unpacklo_epi8(sv, z), _mm256_unpacklo_epi8(dv, z), a),
            Mix16(mode, _mm256_unpackhi_epi8(sv, z), _mm256_unpackhi_epi8(dv, z), a));
        Store(d, Select(alphaByte, dv, r));
    }
    clt_blit::BlendRow(mode, d, s, n - i, amount);
}

CLT_AVX2 void TintRow(int mode, uint8_t* d, const uint8_t* m, int32_t n, const uint8_t c[3])
{
    const __m256i z = _mm256_setzero_si256(), alphaByte = _mm256_set1_epi32(int(0xFF000000));
    const __m256i colour = _mm256_setr_epi16(c[0], c[1], c[2], 0, c[0], c[1], c[2], 0, c[0], c[1],
                                             c[2], 0, c[0], c[1], c[2], 0);
    // Mask byte i repeated over pixel i's four bytes.
    const __m256i spread = _mm256_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4,
                                            4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7);
    int32_t i = 0;
    for (; i + 8 <= n; i += 8, d += 32, m += 8)
    {
        int64_t eight;
        memcpy(&eight, m, 8);
        if (eight == 0) continue;
        __m256i mv = _mm256_shuffle_epi8(_mm256_set1_epi64x(eight), spread);
        __m256i dv = Load(d);
        __m256i r = _mm256_packus_epi16(
            Mix16(mode, colour, _mm256_unpacklo_epi8(dv, z), _mm256_unpacklo_epi8(mv, z)),
            Mix16(mode, colour, _mm256_unpackhi_epi8(dv, z), _mm256_unpackhi_epi8(mv, z)));
        Store(d, Select(_mm256_or_si256(_mm256_cmpeq_epi32(mv, z), alphaByte), dv, r));
    }
    clt_blit::TintRow(mode, d, m, n - i, c);
}

CLT_AVX2 void KeyRow(uint8_t* d, const uint8_t* s, int32_t n, uint32_t key)
{
    const __m256i k = _mm256_set1_epi32(int(key));
    int32_t i = 0;
    for (; i + 8 <= n; i += 8, d += 32, s += 32)
    {
        __m256i sv = Load(s);
        Store(d, Select(_mm256_cmpeq_epi32(sv, k), Load(d), sv));
    }
    clt_blit::KeyRow(d, s, n - i, key);
}

CLT_AVX2 inline __m256i PairSums(__m256i v)
{
    return _mm256_add_epi16(_mm256_and_si256(v, _mm256_set1_epi16(0xFF)), _mm256_srli_epi16(v, 8));
}

CLT_AVX2 inline __m256i HalveLanes(int mode, __m256i sum)
{
    if (mode == 0) return _mm256_srli_epi16(sum, 2);
    return _mm256_and_si256(_mm256_cmpgt_epi16(sum, _mm256_setzero_si256()),
                            _mm256_set1_epi16(0xFF));
}

CLT_AVX2 void HalveRow(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
{
    int32_t x = 0;
    for (; x + 32 <= n; x += 32)
    {
        const uint8_t *a = s0 + 2 * x, *b = s1 + 2 * x;
        __m256i lo = _mm256_add_epi16(PairSums(Load(a)), PairSums(Load(b)));
        __m256i hi = _mm256_add_epi16(PairSums(Load(a + 32)), PairSums(Load(b + 32)));
        __m256i packed = _mm256_packus_epi16(HalveLanes(mode, lo), HalveLanes(mode, hi));
        Store(d + x, _mm256_permute4x64_epi64(packed, 0xD8));
    }
    clt_blit::MmxHalveRow(mode, d + x, s0 + 2 * x, s1 + 2 * x, n - x);
}

CLT_AVX2 void Leave()
{
    _mm256_zeroupper();
}
} // namespace

extern const CltBlitKernels g_Avx2Kernels = {AlphaRow, BlendRow, TintRow, KeyRow, HalveRow, Leave};
