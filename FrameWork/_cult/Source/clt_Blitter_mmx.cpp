// MMX row kernels: one 32-bit pixel at a time in four 16-bit lanes (Halve: four grey
// bytes). The colour bytes equal the generic blitter's; the alpha byte of the destination
// is kept. Halve's mode 1 differs on purpose: it gives 255 when any of the four pixels is
// not 0. The blitter empties the MMX state (EMMS) after each operation's rows.
#include <mmintrin.h>

#include "FrameWork/_cult/Source/clt_BlitKernels.h"

#define CLT_MMX __attribute__((target("mmx")))

namespace
{
CLT_MMX inline __m64 Mix16(int mode, __m64 s, __m64 d, __m64 a)
{
    const __m64 k255 = _mm_set1_pi16(255);
    if (mode == 0)
        return _mm_srli_pi16(
            _mm_add_pi16(_mm_mullo_pi16(s, a), _mm_mullo_pi16(d, _mm_sub_pi16(k255, a))), 8);
    __m64 t = _mm_srli_pi16(_mm_mullo_pi16(s, a), 8);
    return _mm_sub_pi16(
        k255, _mm_srli_pi16(_mm_mullo_pi16(_mm_sub_pi16(k255, t), _mm_sub_pi16(k255, d)), 8));
}

CLT_MMX inline uint32_t Load32(const uint8_t* p)
{
    uint32_t v;
    memcpy(&v, p, 4);
    return v;
}

// Blends one pixel's colour bytes; the destination's alpha byte stays.
CLT_MMX inline void BlendOne(int mode, uint8_t* d, __m64 s, __m64 a)
{
    const __m64 z = _mm_setzero_si64();
    uint32_t dv = Load32(d);
    __m64 r = _mm_packs_pu16(Mix16(mode, s, _mm_unpacklo_pi8(_mm_cvtsi32_si64(int(dv)), z), a), z);
    uint32_t out = (uint32_t(_mm_cvtsi64_si32(r)) & 0x00FFFFFF) | (dv & 0xFF000000);
    memcpy(d, &out, 4);
}

CLT_MMX void AlphaRow(int mode, uint8_t* d, const uint8_t* s, int32_t n)
{
    const __m64 z = _mm_setzero_si64();
    for (int32_t i = 0; i < n; ++i, d += 4, s += 4)
    {
        uint32_t sv = Load32(s);
        if ((sv >> 24) == 0) continue;
        BlendOne(mode, d, _mm_unpacklo_pi8(_mm_cvtsi32_si64(int(sv)), z),
                 _mm_set1_pi16(short(sv >> 24)));
    }
}

CLT_MMX void BlendRow(int mode, uint8_t* d, const uint8_t* s, int32_t n, uint8_t amount)
{
    const __m64 z = _mm_setzero_si64(), a = _mm_set1_pi16(amount);
    for (int32_t i = 0; i < n; ++i, d += 4, s += 4)
        BlendOne(mode, d, _mm_unpacklo_pi8(_mm_cvtsi32_si64(int(Load32(s))), z), a);
}

CLT_MMX void TintRow(int mode, uint8_t* d, const uint8_t* m, int32_t n, const uint8_t c[3])
{
    const __m64 colour = _mm_setr_pi16(c[0], c[1], c[2], 0);
    for (int32_t i = 0; i < n; ++i, d += 4, ++m)
        if (*m) BlendOne(mode, d, colour, _mm_set1_pi16(*m));
}

CLT_MMX inline __m64 PairSums(const uint8_t* p)
{
    __m64 v = _mm_setr_pi32(int(Load32(p)), int(Load32(p + 4)));
    return _mm_add_pi16(_mm_and_si64(v, _mm_set1_pi16(0xFF)), _mm_srli_pi16(v, 8));
}

CLT_MMX void HalveRow(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
{
    const __m64 z = _mm_setzero_si64();
    int32_t x = 0;
    for (; x + 4 <= n; x += 4)
    {
        __m64 sum = _mm_add_pi16(PairSums(s0 + 2 * x), PairSums(s1 + 2 * x));
        __m64 lanes = mode == 0 ? _mm_srli_pi16(sum, 2)
                                : _mm_andnot_si64(_mm_cmpeq_pi16(sum, z), _mm_set1_pi16(0xFF));
        uint32_t out = uint32_t(_mm_cvtsi64_si32(_mm_packs_pu16(lanes, z)));
        memcpy(d + x, &out, 4);
    }
    clt_blit::MmxHalveRow(mode, d + x, s0 + 2 * x, s1 + 2 * x, n - x);
}

CLT_MMX void Leave()
{
    _mm_empty();
}
} // namespace

extern const CltBlitKernels g_MmxKernels = {AlphaRow, BlendRow, TintRow, nullptr, HalveRow, Leave};
