// CltImageRef: shared images bound to memory drawing contexts.
#include "FrameWork/_cult/Source/clt_ImageRef.h"

#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include <algorithm>

CltImageRef::CltImageRef(const CltImageRef& other) : m_pHolder(other.m_pHolder)
{
    if (m_pHolder) ++m_pHolder->refs;
}

CltImageRef& CltImageRef::operator=(const CltImageRef& other)
{
    if (other.m_pHolder) ++other.m_pHolder->refs;
    Release();
    m_pHolder = other.m_pHolder;
    return *this;
}

void CltImageRef::Release()
{
    Holder* holder = m_pHolder;
    m_pHolder = nullptr;
    if (holder && --holder->refs == 0) delete holder;
}

// Selects the holder's image into a new context compatible with reference (or the
// desktop's) and takes the holder; destroys the holder on failure.
bool CltImageRef::Bind(Holder* holder, HDC reference)
{
    bool made = reference ? holder->dc.CreateCompatible(reference) : holder->dc.CreateForScreen();
    if (!made)
    {
        delete holder;
        return false;
    }
    holder->dc.Select(holder->image.m_hBitmap);
    m_pHolder = holder;
    return true;
}

namespace
{
// A DIB section stores its rows left to right. A file stored right to left (a TGA origin)
// has its pixels reversed in every row, so that GDI shows it as the file means it.
void StoreLeftToRight(CltImage& image)
{
    if (image.m_nOrigin != OriginTopRight && image.m_nOrigin != OriginBottomRight) return;
    int32_t bpp = int32_t(image.m_Format.bytesPerPixel);
    for (int32_t y = 0; y < image.m_nHeight; ++y)
    {
        uint8_t* row = image.m_pData + intptr_t(y) * image.m_nPitch;
        for (int32_t l = 0, r = image.m_nWidth - 1; l < r; ++l, --r)
            std::swap_ranges(row + intptr_t(l) * bpp, row + intptr_t(l + 1) * bpp,
                             row + intptr_t(r) * bpp);
    }
    image.m_nOrigin = image.m_nOrigin == OriginTopRight ? OriginTopLeft : OriginBottomLeft;
}
} // namespace

bool CltImageRef::LoadFile(const char* fileName)
{
    Release();
    Holder* holder = new Holder;
    bool loaded = LoadImageFile(CLTID_FileStream, holder->image, fileName);
    if (loaded) StoreLeftToRight(holder->image);
    if (!loaded || !holder->image.ConvertTo(g_pfArgb32) || !holder->image.m_hBitmap)
    {
        delete holder;
        return false;
    }
    return Bind(holder, nullptr);
}

bool CltImageRef::Create(int32_t width, int32_t height, int32_t origin, HDC reference)
{
    Release();
    Holder* holder = new Holder;
    if (!holder->image.Create(g_pfArgb32, width, height, origin))
    {
        delete holder;
        return false;
    }
    return Bind(holder, reference);
}
