// CltImage: heap-backed images, addressing by origin, in-place format conversion.
#include "FrameWork/_cult/Source/clt_Image.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

CltImage::~CltImage()
{
    // The destructor's call is not virtual: a derived class frees its own part first.
    CltImage::Free();
}

bool CltImage::Create(const CltPixelFormat& format, int32_t width, int32_t height, int32_t origin)
{
    Clear();
    if (format.bytesPerPixel == 0 || width < 0 || height < 0) return false;
    uint64_t pitch = (uint64_t(format.bytesPerPixel) * uint64_t(width) + 1) & ~uint64_t(1);
    uint64_t size = pitch * uint64_t(height);
    if (size > kMaxBytes) return false;
    // calloc rather than new: the block is filled with 0 and a failure returns none.
    m_pOwned = static_cast<uint8_t*>(calloc(size ? size : 1, 1));
    if (!m_pOwned) return false;
    m_pData = m_pOwned;
    m_nPitch = int32_t(pitch);
    m_nSize = uint32_t(size);
    m_nOrigin = origin;
    m_nWidth = width;
    m_nHeight = height;
    m_Format = format;
    return true;
}

CltRect CltImage::GetFrameRect(int32_t, int32_t) const
{
    return CltRect{0, 0, m_nWidth, m_nHeight};
}

CltImage* CltImage::New() const
{
    return new CltImage;
}

void CltImage::Clear()
{
    Free();
    m_nWidth = m_nHeight = m_nPitch = 0;
    m_nOrigin = 0;
}

void CltImage::Free()
{
    free(m_pOwned);
    m_pOwned = nullptr;
    m_pData = nullptr;
    m_nSize = 0;
}

uint8_t* CltImage::PixelAddress(int32_t x, int32_t y) const
{
    if (!m_pData) return nullptr;
    intptr_t bpp = m_Format.bytesPerPixel, pitch = m_nPitch;
    intptr_t right = m_nWidth - 1 - intptr_t(x), bottom = m_nHeight - 1 - intptr_t(y);
    switch (m_nOrigin)
    {
    case OriginTopLeft: return m_pData + y * pitch + x * bpp;
    case OriginTopRight: return m_pData + y * pitch + right * bpp;
    case OriginBottomLeft: return m_pData + bottom * pitch + x * bpp;
    case OriginBottomRight: return m_pData + bottom * pitch + right * bpp;
    default: return nullptr;
    }
}

int32_t CltImage::XStep() const
{
    int32_t bpp = int32_t(m_Format.bytesPerPixel);
    switch (m_nOrigin)
    {
    case OriginTopLeft:
    case OriginBottomLeft: return bpp;
    case OriginTopRight:
    case OriginBottomRight: return -bpp;
    default: return 0;
    }
}

int32_t CltImage::YStep() const
{
    switch (m_nOrigin)
    {
    case OriginTopLeft:
    case OriginTopRight: return m_nPitch;
    case OriginBottomLeft:
    case OriginBottomRight: return -m_nPitch;
    default: return 0;
    }
}

void CltImage::Swap(CltImage& other)
{
    std::swap(m_nOrigin, other.m_nOrigin);
    std::swap(m_Format, other.m_Format);
    std::swap(m_pData, other.m_pData);
    std::swap(m_nPitch, other.m_nPitch);
    std::swap(m_nHeight, other.m_nHeight);
    std::swap(m_nWidth, other.m_nWidth);
    std::swap(m_nSize, other.m_nSize);
    std::swap(m_pOwned, other.m_pOwned);
}

// The converted pixels go into a new block of the same kind, which then takes the old
// one's place: no copy of the old block is made (fresh memory costs as it is first
// touched). A failure leaves the image as it was.
bool CltImage::ConvertTo(const CltPixelFormat& format)
{
    if (format.id == m_Format.id) return true;
    std::unique_ptr<CltImage> converted(New());
    if (!converted->Create(format, m_nWidth, m_nHeight, m_nOrigin)) return false;
    for (int32_t r = 0; r < m_nHeight; ++r)
        ConvertRow(format, converted->m_pData + intptr_t(r) * converted->m_nPitch, m_Format,
                   m_pData + intptr_t(r) * m_nPitch, uint32_t(m_nWidth));
    Swap(*converted);
    return true;
}

void CltImage::StoreLeftToRight()
{
    if (m_nOrigin != OriginTopRight && m_nOrigin != OriginBottomRight) return;
    int32_t bpp = int32_t(m_Format.bytesPerPixel);
    for (int32_t y = 0; y < m_nHeight; ++y)
    {
        uint8_t* row = m_pData + intptr_t(y) * m_nPitch;
        for (int32_t l = 0, r = m_nWidth - 1; l < r; ++l, --r)
            std::swap_ranges(row + intptr_t(l) * bpp, row + intptr_t(l + 1) * bpp,
                             row + intptr_t(r) * bpp);
    }
    m_nOrigin = m_nOrigin == OriginTopRight ? OriginTopLeft : OriginBottomLeft;
}
