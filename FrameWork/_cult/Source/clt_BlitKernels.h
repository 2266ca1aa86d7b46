// Row kernels of the faster blitter forms, and the per-pixel arithmetic that every form
// shares, so that a kernel's tail pixels and the generic blitter compute the same bytes.
// A kernel handles one row of n pixels, all 32-bit unless said otherwise, with both
// pointers walking forward; the caller has already clipped. Kernels leave byte 3 of a
// destination pixel unchanged (the generic forms never touch it).
#pragma once

#include <cstdint>
#include <cstring>

struct CltBlitKernels
{
    void (*alphaRow)(int mode, uint8_t* d, const uint8_t* s, int32_t n);
    void (*blendRow)(int mode, uint8_t* d, const uint8_t* s, int32_t n, uint8_t amount);
    void (*tintRow)(int mode, uint8_t* d, const uint8_t* mask, int32_t n, const uint8_t c[3]);
    void (*keyRow)(uint8_t* d, const uint8_t* s, int32_t n, uint32_t key);
    // One output row of n bytes from two stored source rows (grey images).
    void (*halveRow)(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n);
    void (*leave)(); // run after the kernels of one operation (MMX state), or none
};

extern const CltBlitKernels g_MmxKernels;
extern const CltBlitKernels g_Sse2Kernels;
extern const CltBlitKernels g_Avx2Kernels;

namespace clt_blit
{
inline uint8_t Normal(uint32_t s, uint32_t d, uint32_t a)
{
    return uint8_t((s * a + d * (255 - a)) >> 8);
}
inline uint8_t Screen(uint32_t s, uint32_t d, uint32_t a)
{
    return uint8_t(255 - (((255 - ((s * a) >> 8)) * (255 - d)) >> 8));
}
inline void BlendPixel(int mode, uint8_t* d, const uint8_t* s, uint32_t a)
{
    for (int i = 0; i < 3; ++i)
        d[i] = mode == 0 ? Normal(s[i], d[i], a) : Screen(s[i], d[i], a);
}
inline void TintPixel(int mode, uint8_t* d, uint32_t a, const uint8_t c[3])
{
    for (int i = 0; i < 3; ++i)
        d[i] = mode == 0 ? Normal(c[i], d[i], a) : Screen(c[i], d[i], a);
}
inline void KeyPixel(uint8_t* d, const uint8_t* s, uint32_t key)
{
    uint32_t v;
    memcpy(&v, s, 4);
    if (v != key) memcpy(d, &v, 4);
}
// Generic Halve: mode 0 averages, mode 1 sets 255 when the sum is 4 or more.
inline uint8_t HalvePixel(int mode, uint32_t a, uint32_t b, uint32_t c, uint32_t d)
{
    uint32_t sum = a + b + c + d;
    return mode == 0 ? uint8_t(sum >> 2) : (sum >= 4 ? 255 : 0);
}

// Scalar rows, for tails and for forms that lack a kernel.
inline void AlphaRow(int mode, uint8_t* d, const uint8_t* s, int32_t n)
{
    for (int32_t i = 0; i < n; ++i, d += 4, s += 4)
        if (s[3]) BlendPixel(mode, d, s, s[3]);
}
inline void BlendRow(int mode, uint8_t* d, const uint8_t* s, int32_t n, uint8_t amount)
{
    for (int32_t i = 0; i < n; ++i, d += 4, s += 4)
        BlendPixel(mode, d, s, amount);
}
inline void TintRow(int mode, uint8_t* d, const uint8_t* m, int32_t n, const uint8_t c[3])
{
    for (int32_t i = 0; i < n; ++i, d += 4, ++m)
        if (*m) TintPixel(mode, d, *m, c);
}
inline void KeyRow(uint8_t* d, const uint8_t* s, int32_t n, uint32_t key)
{
    for (int32_t i = 0; i < n; ++i, d += 4, s += 4)
        KeyPixel(d, s, key);
}
inline void HalveRow(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
{
    for (int32_t x = 0; x < n; ++x)
        d[x] = HalvePixel(mode, s0[2 * x], s0[2 * x + 1], s1[2 * x], s1[2 * x + 1]);
}

// The MMX blitter's Halve, which every faster form gives too, since each stands in for the
// MMX blitter on the processors that have it: mode 1 sets 255 when any of the four pixels
// is not 0.
inline void MmxHalveRow(int mode, uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
{
    for (int32_t x = 0; x < n; ++x)
    {
        uint32_t sum = s0[2 * x] + s0[2 * x + 1] + s1[2 * x] + s1[2 * x + 1];
        d[x] = mode == 0 ? uint8_t(sum >> 2) : (sum ? 255 : 0);
    }
}
} // namespace clt_blit
