// CltImage: a block of pixels in one pixel format, with a size, a row pitch and an origin
// that fixes the storage order. PixelAddress, XStep and YStep address the image as seen
// (x to the right, y down) whatever the storage order, so pixel operations never care how
// rows are stored. An image owns its pixel block; Free releases it and the destructor
// calls Free. Create never leaves a half-made image: on failure the image is empty.
#pragma once

#include <cstdint>

#include "FrameWork/_cult/Source/clt_PixelFormat.h"
#include "FrameWork/_cult/Source/clt_Rect.h"

enum CltOrigin : int32_t
{
    OriginTopLeft = 1,
    OriginTopRight = 2,
    OriginBottomLeft = 3,
    OriginBottomRight = 4,
};

class CltImage
{
  public:
    CltImage() = default;
    CltImage(const CltImage&) = delete;
    CltImage& operator=(const CltImage&) = delete;
    virtual ~CltImage();

    virtual bool Create(const CltPixelFormat& format, int32_t width, int32_t height,
                        int32_t origin);
    virtual CltRect GetFrameRect(int32_t column, int32_t row) const;
    virtual CltImage* New() const;
    virtual void Free();
    // Exchanges pixel blocks and descriptions with an image of the same kind (made by New).
    virtual void Swap(CltImage& other);
    // Frees the pixels and forgets size, pitch and origin: the image is wholly empty.
    void Clear();

    uint8_t* PixelAddress(int32_t x, int32_t y) const;
    uint8_t* FirstPixel() const { return PixelAddress(0, 0); }
    int32_t XStep() const;
    int32_t YStep() const;
    bool ConvertTo(const CltPixelFormat& format);
    // A DIB section stores its rows left to right: an image stored right to left (a TGA
    // origin) has its pixels reversed in every row and its origin changed to match, so
    // that it looks the same and GDI shows it as the file means it.
    void StoreLeftToRight();

    int32_t m_nOrigin = 0;
    CltPixelFormat m_Format = {};
    uint8_t* m_pData = nullptr;
    int32_t m_nPitch = 0;
    int32_t m_nHeight = 0;
    int32_t m_nWidth = 0;
    uint32_t m_nSize = 0;
    uint8_t* m_pOwned = nullptr;
    void* m_pFrames = nullptr; // never set in this program; kept across ConvertTo

    // Largest pixel block an image may have: pitch and size stay signed 32-bit.
    static constexpr uint64_t kMaxBytes = 0x7FFFFFFF;
};
