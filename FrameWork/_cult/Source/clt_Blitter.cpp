// The generic blitter, the clipping shared by every form, the kernel blitter that runs a
// faster form's row kernels, and the table of forms chosen from at start-up.
#include "FrameWork/_cult/Source/clt_Blitter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

#include "FrameWork/_cult/Source/clt_BlitKernels.h"
#include "FrameWork/_cult/Source/clt_Init.h"

#if defined(__i386__) || defined(__x86_64__)
#include <cpuid.h>
#endif

using namespace clt_blit;

namespace
{
// A clipped block: destination start, source start, size.
struct Block
{
    int32_t dx, dy, sx, sy, w, h;
};

// Clipping of a source placed with its top-left at (x, y) of the destination.
bool ClipPlaced(const CltImage& d, const CltImage& s, int32_t x, int32_t y, Block& b)
{
    int64_t w = std::min<int64_t>(int64_t(x) + s.m_nWidth, d.m_nWidth) - std::max(x, 0);
    int64_t h = std::min<int64_t>(int64_t(y) + s.m_nHeight, d.m_nHeight) - std::max(y, 0);
    if (w < 1 || h < 1 || !d.m_pData || !s.m_pData) return false;
    b = Block{std::max(x, 0), std::max(y, 0), x < 0 ? -x : 0,
              y < 0 ? -y : 0, int32_t(w),     int32_t(h)};
    return true;
}

// One axis of the key blit's clipping: first against the source, then the destination.
bool ClipKeyAxis(int64_t& o, int64_t& size, int64_t s, int64_t sSize, int64_t d, int64_t dSize)
{
    int64_t excess;
    if (s < 0)
    {
        o = -s;
        size += s;
        excess = size - sSize;
    }
    else
        excess = size - sSize + s;
    if (excess > 0) size -= excess;
    int64_t t = o + d;
    if (t < 0)
    {
        o -= t;
        size += t;
        excess = size - dSize;
    }
    else
        excess = size - dSize + t;
    if (excess > 0) size -= excess;
    return size >= 1;
}

bool ClipKey(const CltImage& d, int32_t dx, int32_t dy, const CltImage& s, int32_t sx, int32_t sy,
             int32_t w, int32_t h, Block& b)
{
    int64_t ox = 0, oy = 0, cw = w, ch = h;
    if (!ClipKeyAxis(ox, cw, sx, s.m_nWidth, dx, d.m_nWidth)) return false;
    if (!ClipKeyAxis(oy, ch, sy, s.m_nHeight, dy, d.m_nHeight)) return false;
    if (!d.m_pData || !s.m_pData) return false;
    b = Block{int32_t(dx + ox), int32_t(dy + oy), int32_t(sx + ox),
              int32_t(sy + oy), int32_t(cw),      int32_t(ch)};
    return true;
}

bool IsBlendMode(int mode)
{
    return mode == 0 || mode == 1;
}

// Walks a clipped block pixel by pixel in the images' own orders.
template <typename F> void WalkBlock(CltImage& d, const CltImage& s, const Block& b, F pixel)
{
    uint8_t* dRow = d.PixelAddress(b.dx, b.dy);
    const uint8_t* sRow = s.PixelAddress(b.sx, b.sy);
    for (int32_t y = 0; y < b.h; ++y, dRow += d.YStep(), sRow += s.YStep())
    {
        uint8_t* dp = dRow;
        const uint8_t* sp = sRow;
        for (int32_t x = 0; x < b.w; ++x, dp += d.XStep(), sp += s.XStep())
            pixel(dp, sp);
    }
}

// Walks a clipped block row by row for a kernel. Rows run forward when both images do;
// when both run backward the row is the same pairs of pixels read from its left end.
// Returns false (nothing done) when the two run in opposite directions.
template <typename F> bool WalkRows(CltImage& d, const CltImage& s, const Block& b, F row)
{
    int32_t dStep = d.XStep(), sStep = s.XStep();
    if ((dStep > 0) != (sStep > 0)) return false;
    uint8_t* dRow = d.PixelAddress(b.dx, b.dy);
    const uint8_t* sRow = s.PixelAddress(b.sx, b.sy);
    if (dStep < 0)
    {
        dRow += intptr_t(b.w - 1) * dStep;
        sRow += intptr_t(b.w - 1) * sStep;
    }
    for (int32_t y = 0; y < b.h; ++y, dRow += d.YStep(), sRow += s.YStep())
        row(dRow, sRow, b.w);
    return true;
}

// Runs a form's row kernel over a clipped block, then leaves the form's state (MMX,
// wide registers). False when nothing was done (rows in opposite directions).
template <typename F>
bool RunKernel(const CltBlitKernels& kernels, CltImage& d, const CltImage& s, const Block& b, F row)
{
    bool done = WalkRows(d, s, b, row);
    if (kernels.leave) kernels.leave();
    return done;
}

bool Is32(const CltImage& image)
{
    return image.m_Format.bytesPerPixel == 4;
}
bool IsGrey(const CltImage& image)
{
    return image.m_Format.id == g_pfGrey8.id;
}
bool HasColourBytes(const CltImage& image)
{
    return image.m_Format.bytesPerPixel >= 3;
}

const uint8_t kGlow2[3 * 3] = {10, 16, 10, 50, 255, 50, 10, 16, 10};
const uint8_t kGlow4[5 * 5] = {0,   0,  0, 0, 0, 0, 0, 0, 0, 0, 64, 128, 255,
                               128, 64, 0, 0, 0, 0, 0, 0, 0, 0, 0,  0};
const uint8_t kGlow8[9 * 9] = {2,  4,  4,  10, 20, 10, 4,   4,  2,  4,  8,  10, 20, 30, 20, 10, 8,
                               4,  4,  10, 20, 40, 50, 40,  20, 10, 4,  10, 20, 30, 50, 90, 50, 30,
                               20, 10, 20, 30, 50, 90, 255, 90, 50, 30, 20, 10, 20, 30, 50, 90, 50,
                               30, 20, 10, 4,  10, 20, 40,  50, 40, 20, 10, 4,  4,  8,  10, 20, 30,
                               20, 10, 8,  4,  2,  4,  4,   10, 20, 10, 4,  4,  2};
} // namespace

// ---- the generic blitter -------------------------------------------------------------

void CltBlitter::MixColour(int mode, uint32_t base, uint32_t over, uint8_t amount, uint8_t out[4])
{
    uint8_t b[4], o[4];
    memcpy(b, &base, 4);
    memcpy(o, &over, 4);
    if (mode == 0)
        for (int i = 0; i < 3; ++i)
            out[i] = Normal(o[i], b[i], amount);
    else if (mode == 1) // the plain screen of the two colours; the amount does not enter
        for (int i = 0; i < 3; ++i)
            out[i] = uint8_t(255 - (((255 - o[i]) * (255 - b[i])) >> 8));
    else if (mode == 2)
    {
        double theta = amount * asin(1.0) / 255.0;
        uint32_t S = uint32_t(sin(theta) * 255.0), C = uint32_t(cos(theta) * 255.0);
        for (int i = 0; i < 3; ++i)
            out[i] = o[i] > b[i] ? uint8_t((b[i] * (255 - S) + o[i] * S) >> 8)
                                 : uint8_t((o[i] * (255 - C) + b[i] * C) >> 8);
    }
    out[3] = 0;
}

void CltBlitter::AlphaBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y)
{
    Block b;
    if (!IsBlendMode(mode) || !Is32(src) || !HasColourBytes(dst)) return;
    if (!ClipPlaced(dst, src, x, y, b)) return;
    WalkBlock(dst, src, b,
              [mode](uint8_t* d, const uint8_t* s)
              {
                  if (s[3]) BlendPixel(mode, d, s, s[3]);
              });
}

void CltBlitter::BlendBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y,
                           uint8_t amount)
{
    Block b;
    if (!IsBlendMode(mode) || !HasColourBytes(src) || !HasColourBytes(dst)) return;
    if (!ClipPlaced(dst, src, x, y, b)) return;
    WalkBlock(dst, src, b,
              [mode, amount](uint8_t* d, const uint8_t* s) { BlendPixel(mode, d, s, amount); });
}

void CltBlitter::TintBlit(int mode, CltImage& dst, const CltImage& mask, int32_t x, int32_t y,
                          const uint8_t colour[3])
{
    Block b;
    if (!IsBlendMode(mode) || mask.m_Format.bytesPerPixel != 1 || !HasColourBytes(dst)) return;
    if (!ClipPlaced(dst, mask, x, y, b)) return;
    WalkBlock(dst, mask, b,
              [mode, colour](uint8_t* d, const uint8_t* m)
              {
                  if (*m) TintPixel(mode, d, *m, colour);
              });
}

void CltBlitter::Glow(CltImage& image, int size)
{
    const uint8_t* kernel = size == 2 ? kGlow2 : size == 4 ? kGlow4 : size == 8 ? kGlow8 : nullptr;
    if (!kernel || !IsGrey(image) || !image.m_pData) return;
    int32_t r = size / 2, span = 2 * r + 1, w = image.m_nWidth, h = image.m_nHeight;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            if (image.m_pData[intptr_t(y) * image.m_nPitch + x] != 255) continue;
            for (int32_t ky = 0; ky < span; ++ky)
            {
                int32_t py = y + ky - r;
                if (py < 0 || py >= h) continue;
                uint8_t* row = image.m_pData + intptr_t(py) * image.m_nPitch;
                for (int32_t kx = 0; kx < span; ++kx)
                {
                    int32_t px = x + kx - r;
                    if (px < 0 || px >= w) continue;
                    uint32_t k = kernel[ky * span + kx];
                    row[px] = uint8_t(255 - (((255 - k) * (255 - row[px])) >> 8));
                }
            }
        }
}

void CltBlitter::MaxBlit(CltImage& dst, const CltImage& src, int32_t x, int32_t y)
{
    Block b;
    auto channels = [](const CltImage& i) { return i.m_Format.channelCount; };
    if ((channels(dst) != 1 && channels(dst) != 3) || (channels(src) != 1 && channels(src) != 3))
        return;
    if (!ClipPlaced(dst, src, x, y, b)) return;
    // The compared byte is the last channel's; a grey pixel (three channels in one byte)
    // compares its only byte, so nothing outside the pixel is read.
    auto offset = [](const CltImage& i)
    { return std::min(i.m_Format.channelCount, i.m_Format.bytesPerPixel) - 1; };
    uint32_t dOff = offset(dst), sOff = offset(src);
    WalkBlock(dst, src, b,
              [dOff, sOff](uint8_t* d, const uint8_t* s)
              {
                  if (s[sOff] > d[dOff]) d[dOff] = s[sOff];
              });
}

void CltBlitter::KeyBlit(CltImage& dst, int32_t dx, int32_t dy, const CltImage& src, int32_t sx,
                         int32_t sy, int32_t w, int32_t h, uint32_t key)
{
    Block b;
    if (!Is32(dst) || !Is32(src)) return;
    if (!ClipKey(dst, dx, dy, src, sx, sy, w, h, b)) return;
    WalkBlock(dst, src, b, [key](uint8_t* d, const uint8_t* s) { KeyPixel(d, s, key); });
}

// Halve works in stored order: output stored row y, byte x comes from bytes 2x and 2x+1
// of stored rows 2y and 2y+1. For top-down images this is the image as seen; for the
// others it keeps every read inside the source whatever its origin.
namespace
{
template <typename Row> void HalveRows(CltImage& dst, const CltImage& src, int mode, Row row)
{
    if (!IsGrey(dst) || !IsGrey(src) || (mode != 0 && mode != 1)) return;
    if (!dst.m_pData || !src.m_pData) return;
    int32_t w = std::min(src.m_nWidth / 2, dst.m_nWidth);
    int32_t h = std::min(src.m_nHeight / 2, dst.m_nHeight);
    for (int32_t y = 0; y < h; ++y)
    {
        const uint8_t* s0 = src.m_pData + intptr_t(2 * y) * src.m_nPitch;
        row(dst.m_pData + intptr_t(y) * dst.m_nPitch, s0, s0 + src.m_nPitch, w);
    }
}
} // namespace

void CltBlitter::Halve(CltImage& dst, const CltImage& src, int mode)
{
    HalveRows(dst, src, mode,
              [mode](uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
              { HalveRow(mode, d, s0, s1, n); });
}

void CltBlitter::FlipVertical(CltImage& image)
{
    if (!image.m_pData || image.m_nHeight < 2) return;
    uint8_t* temp = static_cast<uint8_t*>(malloc(size_t(image.m_nPitch)));
    if (!temp) return;
    for (int32_t i = 0; i < image.m_nHeight / 2; ++i)
    {
        uint8_t* a = image.m_pData + intptr_t(i) * image.m_nPitch;
        uint8_t* b = image.m_pData + intptr_t(image.m_nHeight - 1 - i) * image.m_nPitch;
        memcpy(temp, a, size_t(image.m_nPitch));
        memcpy(a, b, size_t(image.m_nPitch));
        memcpy(b, temp, size_t(image.m_nPitch));
    }
    free(temp);
}

void CltBlitter::FlipHorizontal(CltImage& image)
{
    uint32_t bpp = image.m_Format.bytesPerPixel;
    if (!image.m_pData || bpp == 0 || bpp > 4) return;
    for (int32_t y = 0; y < image.m_nHeight; ++y)
    {
        uint8_t* row = image.m_pData + intptr_t(y) * image.m_nPitch;
        for (int32_t j = 0; j < image.m_nWidth / 2; ++j)
        {
            uint8_t t[4];
            uint8_t* a = row + intptr_t(j) * bpp;
            uint8_t* b = row + intptr_t(image.m_nWidth - 1 - j) * bpp;
            memcpy(t, a, bpp);
            memcpy(a, b, bpp);
            memcpy(b, t, bpp);
        }
    }
}

// ---- the kernel blitter ----------------------------------------------------------------

void CltKernelBlitter::AlphaBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y)
{
    Block b;
    if (!m_Kernels.alphaRow || !IsBlendMode(mode) || !Is32(dst) || !Is32(src))
        return CltBlitter::AlphaBlit(mode, dst, src, x, y);
    if (!ClipPlaced(dst, src, x, y, b)) return;
    bool done = RunKernel(m_Kernels, dst, src, b,
                          [&](uint8_t* d, const uint8_t* s, int32_t n)
                          { m_Kernels.alphaRow(mode, d, s, n); });
    if (!done) CltBlitter::AlphaBlit(mode, dst, src, x, y);
}

void CltKernelBlitter::BlendBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y,
                                 uint8_t amount)
{
    Block b;
    if (!m_Kernels.blendRow || !IsBlendMode(mode) || !Is32(dst) || !Is32(src))
        return CltBlitter::BlendBlit(mode, dst, src, x, y, amount);
    if (!ClipPlaced(dst, src, x, y, b)) return;
    bool done = RunKernel(m_Kernels, dst, src, b,
                          [&](uint8_t* d, const uint8_t* s, int32_t n)
                          { m_Kernels.blendRow(mode, d, s, n, amount); });
    if (!done) CltBlitter::BlendBlit(mode, dst, src, x, y, amount);
}

void CltKernelBlitter::TintBlit(int mode, CltImage& dst, const CltImage& mask, int32_t x, int32_t y,
                                const uint8_t colour[3])
{
    Block b;
    if (!m_Kernels.tintRow || !IsBlendMode(mode) || !Is32(dst) || mask.m_Format.bytesPerPixel != 1)
        return CltBlitter::TintBlit(mode, dst, mask, x, y, colour);
    if (!ClipPlaced(dst, mask, x, y, b)) return;
    bool done = RunKernel(m_Kernels, dst, mask, b,
                          [&](uint8_t* d, const uint8_t* m, int32_t n)
                          { m_Kernels.tintRow(mode, d, m, n, colour); });
    if (!done) CltBlitter::TintBlit(mode, dst, mask, x, y, colour);
}

void CltKernelBlitter::KeyBlit(CltImage& dst, int32_t dx, int32_t dy, const CltImage& src,
                               int32_t sx, int32_t sy, int32_t w, int32_t h, uint32_t key)
{
    Block b;
    if (!m_Kernels.keyRow || !Is32(dst) || !Is32(src))
        return CltBlitter::KeyBlit(dst, dx, dy, src, sx, sy, w, h, key);
    if (!ClipKey(dst, dx, dy, src, sx, sy, w, h, b)) return;
    bool done =
        RunKernel(m_Kernels, dst, src, b,
                  [&](uint8_t* d, const uint8_t* s, int32_t n) { m_Kernels.keyRow(d, s, n, key); });
    if (!done) CltBlitter::KeyBlit(dst, dx, dy, src, sx, sy, w, h, key);
}

void CltKernelBlitter::Halve(CltImage& dst, const CltImage& src, int mode)
{
    if (!m_Kernels.halveRow) return CltBlitter::Halve(dst, src, mode);
    HalveRows(dst, src, mode,
              [&](uint8_t* d, const uint8_t* s0, const uint8_t* s1, int32_t n)
              { m_Kernels.halveRow(mode, d, s0, s1, n); });
    if (m_Kernels.leave) m_Kernels.leave();
}

// ---- forms and their choice ------------------------------------------------------------

namespace
{
struct CpuFeatures
{
    bool mmx = false, sse2 = false, avx2 = false;
};

CpuFeatures ReadCpuFeatures()
{
    CpuFeatures f;
#if defined(__i386__) || defined(__x86_64__)
    unsigned a, b, c, d;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return f;
    f.mmx = (d >> 23) & 1;
    f.sse2 = (d >> 26) & 1;
    // AVX2 needs the processor's bit and the system saving the wide registers (XCR0).
    bool osxsave = (c >> 27) & 1, avx = (c >> 28) & 1;
    if (osxsave && avx && __get_cpuid_max(0, nullptr) >= 7)
    {
        unsigned lo, hi;
        __asm__("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
        unsigned b7 = 0, a7, c7, d7;
        __cpuid_count(7, 0, a7, b7, c7, d7);
        f.avx2 = (lo & 6) == 6 && ((b7 >> 5) & 1);
    }
#endif
    return f;
}

const CpuFeatures& Cpu()
{
    static const CpuFeatures features = ReadCpuFeatures();
    return features;
}

bool Always()
{
    return true;
}

const CltBlitterForm g_Forms[] = {
#if defined(__i386__) || defined(__x86_64__)
    {"avx2", [] { return Cpu().avx2; }, &g_Avx2Kernels},
    {"sse2", [] { return Cpu().sse2; }, &g_Sse2Kernels},
    {"mmx", [] { return Cpu().mmx; }, &g_MmxKernels},
#endif
    {"generic", Always, nullptr},
};

const CltBlitterForm& ChooseForm()
{
    for (const CltBlitterForm& form : g_Forms)
        if (form.supported()) return form;
    return g_Forms[sizeof g_Forms / sizeof g_Forms[0] - 1];
}

// Chosen once, with the other graphics statics.
struct ChosenForm
{
    const CltBlitterForm& form = ChooseForm();
};
CLT_STATIC(CLT_INIT_GRAPHICS) ChosenForm g_Chosen;
} // namespace

const CltBlitterForm* GetBlitterForms(int* count)
{
    *count = int(sizeof g_Forms / sizeof g_Forms[0]);
    return g_Forms;
}

const CltBlitterForm& GetChosenBlitterForm()
{
    return g_Chosen.form;
}

CltBlitter* CreateBlitterForm(const CltBlitterForm& form)
{
    if (!form.kernels) return new (std::nothrow) CltBlitter;
    return new (std::nothrow) CltKernelBlitter(*form.kernels);
}

CltBlitter* CreateBlitter()
{
    return CreateBlitterForm(g_Chosen.form);
}
