// CltBlitter: the pixel operations on images, in a fixed slot order. The generic blitter
// works pixel by pixel through PixelAddress, XStep and YStep, so it handles every origin
// and pixel size. Faster forms (MMX, SSE2, AVX2) replace some operations with row kernels
// and fall back to the generic code whenever an image is not one they handle.
//
// Blending arithmetic, on unsigned bytes, truncating:
//   normal: d = (s*a + d*(255-a)) >> 8
//   screen: d = 255 - ((255 - ((s*a) >> 8)) * (255 - d) >> 8)
#pragma once

#include <cstdint>

#include "FrameWork/_cult/Source/clt_Image.h"

struct CltBlitKernels;

class CltBlitter
{
  public:
    CltBlitter() = default;
    CltBlitter(const CltBlitter&) = delete;
    CltBlitter& operator=(const CltBlitter&) = delete;

    virtual void MixColour(int mode, uint32_t base, uint32_t over, uint8_t amount, uint8_t out[4]);
    virtual void AlphaBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y);
    virtual void BlendBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y,
                           uint8_t amount);
    virtual void TintBlit(int mode, CltImage& dst, const CltImage& mask, int32_t x, int32_t y,
                          const uint8_t colour[3]);
    virtual void Glow(CltImage& image, int size);
    virtual void MaxBlit(CltImage& dst, const CltImage& src, int32_t x, int32_t y);
    virtual void KeyBlit(CltImage& dst, int32_t dx, int32_t dy, const CltImage& src, int32_t sx,
                         int32_t sy, int32_t w, int32_t h, uint32_t key);
    virtual void Halve(CltImage& dst, const CltImage& src, int mode);
    virtual void FlipVertical(CltImage& image);
    virtual void FlipHorizontal(CltImage& image);
    virtual ~CltBlitter() = default;
};

// A blitter whose bulk operations run through one form's row kernels. Every kernel form
// stands in for the MMX blitter and gives its results, Halve's mode 1 included (255 when
// any of the four pixels is not 0, where the generic blitter needs a sum of 4).
class CltKernelBlitter : public CltBlitter
{
  public:
    explicit CltKernelBlitter(const CltBlitKernels& kernels) : m_Kernels(kernels) {}

    void AlphaBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y) override;
    void BlendBlit(int mode, CltImage& dst, const CltImage& src, int32_t x, int32_t y,
                   uint8_t amount) override;
    void TintBlit(int mode, CltImage& dst, const CltImage& mask, int32_t x, int32_t y,
                  const uint8_t colour[3]) override;
    void KeyBlit(CltImage& dst, int32_t dx, int32_t dy, const CltImage& src, int32_t sx, int32_t sy,
                 int32_t w, int32_t h, uint32_t key) override;
    void Halve(CltImage& dst, const CltImage& src, int mode) override;

  private:
    const CltBlitKernels& m_Kernels;
};

// The forms this program has, fastest first; "generic" is always last and always there.
struct CltBlitterForm
{
    const char* name;
    bool (*supported)();
    const CltBlitKernels* kernels; // none for the generic form
};
const CltBlitterForm* GetBlitterForms(int* count);

// The fastest form the processor supports, chosen once at start-up.
const CltBlitterForm& GetChosenBlitterForm();
CltBlitter* CreateBlitterForm(const CltBlitterForm& form);
CltBlitter* CreateBlitter();
