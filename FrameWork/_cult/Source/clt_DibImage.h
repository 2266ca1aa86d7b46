// CltDibImage: an image whose pixels live in a GDI DIB section, so that GDI can draw it.
// Rows are 4-byte aligned (GDI's pitch); only top-down and bottom-up storage exist, in
// 32-bit, 24-bit and grey formats. The image owns its section, its mask bitmap and its
// palette; Free deletes them.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_Image.h"

class CltDibImage : public CltImage
{
  public:
    CltDibImage() = default;
    ~CltDibImage() override;

    bool Create(const CltPixelFormat& format, int32_t width, int32_t height,
                int32_t origin) override;
    CltImage* New() const override;
    void Free() override;
    void Swap(CltImage& other) override;
    virtual bool LoadBitmapFile(const char* fileName);

    HBITMAP m_hBitmap = nullptr;
    HBITMAP m_hMask = nullptr;
    HPALETTE m_hPalette = nullptr;

  private:
    DIBSECTION TakeSection(HBITMAP bitmap);
};
