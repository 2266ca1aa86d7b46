// CltDibImage: DIB-section images and bitmaps loaded through the system with their mask.
#include "FrameWork/_cult/Source/clt_DibImage.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "FrameWork/_cult/Source/clt_DC.h"
#include "FrameWork/_cult/Source/clt_String.h"

CltDibImage::~CltDibImage()
{
    CltDibImage::Free();
}

bool CltDibImage::Create(const CltPixelFormat& format, int32_t width, int32_t height,
                         int32_t origin)
{
    Clear();
    if (origin != OriginTopLeft && origin != OriginBottomLeft) return false;
    if (width < 0 || height < 0) return false;

    struct
    {
        BITMAPINFOHEADER header;
        RGBQUAD colours[256];
    } info = {};
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    info.header.biWidth = width;
    info.header.biHeight = origin == OriginTopLeft ? -height : height;
    info.header.biPlanes = 1;
    info.header.biCompression = BI_RGB;
    if (format.id == g_pfArgb32.id || format.id == g_pfRgb24.id)
        info.header.biBitCount = WORD(format.bitsPerPixel);
    else if (format.id == g_pfGrey8.id)
    {
        info.header.biBitCount = 8;
        info.header.biClrUsed = info.header.biClrImportant = 256;
        for (int i = 0; i < 256; ++i)
            info.colours[i] = RGBQUAD{BYTE(i), BYTE(i), BYTE(i), 0};
    }
    else
        return false;
    // GDI's own row size; refuse blocks whose size would not fit the image's fields.
    uint64_t pitch = ((uint64_t(width) * info.header.biBitCount + 31) / 32) * 4;
    if (pitch * uint64_t(height) > kMaxBytes) return false;

    HWND desktop = GetDesktopWindow();
    HDC screen = GetDC(desktop);
    void* bits = nullptr;
    HBITMAP section = CreateDIBSection(screen, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS,
                                       &bits, nullptr, 0);
    ReleaseDC(desktop, screen);
    if (!section) return false;
    TakeSection(section);
    m_nOrigin = origin;
    m_nWidth = width;
    m_nHeight = height;
    m_Format = format;
    return true;
}

// Reads data, pitch and size back from a DIB section and keeps the section; returns what
// it read.
DIBSECTION CltDibImage::TakeSection(HBITMAP bitmap)
{
    DIBSECTION section = {};
    GetObjectA(bitmap, sizeof section, &section);
    m_hBitmap = bitmap;
    m_pData = static_cast<uint8_t*>(section.dsBm.bmBits);
    m_nPitch = section.dsBm.bmWidthBytes;
    m_nSize = section.dsBmih.biSizeImage;
    if (m_nSize == 0) m_nSize = uint32_t(m_nPitch) * uint32_t(section.dsBm.bmHeight);
    return section;
}

CltImage* CltDibImage::New() const
{
    return new CltDibImage;
}

void CltDibImage::Swap(CltImage& other)
{
    CltImage::Swap(other);
    auto& dib = static_cast<CltDibImage&>(other);
    std::swap(m_hBitmap, dib.m_hBitmap);
    std::swap(m_hMask, dib.m_hMask);
    std::swap(m_hPalette, dib.m_hPalette);
}

void CltDibImage::Free()
{
    CltImage::Free();
    if (m_hBitmap) DeleteObject(m_hBitmap);
    if (m_hMask) DeleteObject(m_hMask);
    if (m_hPalette) DeleteObject(m_hPalette);
    m_hBitmap = nullptr;
    m_hMask = nullptr;
    m_hPalette = nullptr;
}

namespace
{
HBITMAP LoadSection(const char* fileName)
{
    return static_cast<HBITMAP>(LoadImageA(nullptr, fileName, IMAGE_BITMAP, 0, 0,
                                           LR_LOADFROMFILE | LR_CREATEDIBSECTION | LR_SHARED));
}

HPALETTE MakePalette(CltDC& dc, HBITMAP bitmap, UINT count)
{
    RGBQUAD colours[256];
    if (count > 256) count = 256;
    dc.Select(bitmap);
    UINT got = GetDIBColorTable(dc.Handle(), 0, count, colours);
    dc.Restore();
    struct
    {
        WORD version, entries;
        PALETTEENTRY entry[256];
    } palette = {0x300, WORD(got), {}};
    for (UINT i = 0; i < got; ++i)
        palette.entry[i] =
            PALETTEENTRY{colours[i].rgbRed, colours[i].rgbGreen, colours[i].rgbBlue, 0};
    HPALETTE made = CreatePalette(reinterpret_cast<LOGPALETTE*>(&palette));
    if (!made) MessageBoxA(nullptr, "CreatePalette Failed", "check", MB_OK);
    return made;
}
} // namespace

bool CltDibImage::LoadBitmapFile(const char* fileName)
{
    Free();
    CltDC dc;
    dc.CreateForScreen();
    HBITMAP bitmap = LoadSection(fileName);
    if (!bitmap) return false;

    DIBSECTION section = TakeSection(bitmap);
    m_nWidth = section.dsBm.bmWidth;
    m_nHeight = section.dsBm.bmHeight;
    m_nOrigin = section.dsBmih.biHeight > 0 ? OriginBottomLeft : OriginTopLeft;
    switch (section.dsBm.bmBitsPixel)
    {
    case 32: m_Format = g_pfArgb32; break;
    case 24: m_Format = g_pfRgb24; break;
    case 8:
        m_Format = g_pfIndexed8;
        m_hPalette = MakePalette(dc, bitmap, section.dsBmih.biClrUsed);
        break;
    default: m_Format = CltPixelFormat{}; break;
    }

    // The mask of "name.bmp" is "name_m.bmp": black mask pixels blacken the picture.
    size_t length = strlen(fileName);
    CltString strMask(fileName, uint32_t(length >= 4 ? length - 4 : 0));
    strMask += "_m.bmp";
    m_hMask = LoadSection(strMask.c_str());
    if (m_hMask)
    {
        CltDC maskDC;
        maskDC.CreateCompatible(dc.Handle());
        maskDC.Select(m_hMask);
        dc.Select(bitmap);
        // The section's height, always positive, rather than the header's signed one.
        dc.BitBlt(0, 0, m_nWidth, m_nHeight, maskDC.Handle(), 0, 0, SRCAND);
        dc.Restore();
        maskDC.Restore();
    }
    return true;
}
