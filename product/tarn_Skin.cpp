// CTarnSkin: reading the skin files (see tarn_Skin.h).
#include "product/tarn_Skin.h"

#include "product/tarn_SkinFiles.h"

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_RegionData.h"
#include "FrameWork/_cult/Source/clt_Scale.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"

#include <cstring>
#include <initializer_list>
#include <vector>

namespace
{
CltString PathOf(const CltString& dataDir, TarnSkinId id)
{
    return JoinPath(dataDir, kTarnSkinFiles[id].name);
}

void Fill(CltImage& pixels, uint32_t value)
{
    for (int32_t y = 0; y < pixels.m_nHeight; ++y)
        for (int32_t x = 0; x < pixels.m_nWidth; ++x)
            memcpy(pixels.PixelAddress(x, y), &value, 4);
}

bool Readable(const CltImage& image)
{
    return image.m_pData && image.m_nWidth > 0 && image.m_nHeight > 0;
}

// A background of the design size in one colour, for a skin without a readable one.
void MakeFallbackBackground(CltImageRef& image)
{
    if (image.Create(CTarnSkin::kFallbackWidth, CTarnSkin::kFallbackHeight, OriginTopLeft))
        Fill(*image.Image(), CTarnSkin::kFallbackColour);
}

// A title button that draws nothing: every pixel has the key colour read at (0, 1).
void StandInTitleButton(CltImageRef& image)
{
    if (!image.IsEmpty() && Readable(*image.Image()) && image.Height() >= 2) return;
    if (image.Create(CTarnSkin::kTitleButtonWidth, CTarnSkin::kTitleButtonHeight, OriginTopLeft))
        Fill(*image.Image(), 0xFFFF00FF);
}

// A page button face that draws nothing (wholly transparent) in the given size.
void StandInPageButton(CltImage& image, int32_t width, int32_t height)
{
    if (Readable(image)) return;
    if (image.Create(g_pfArgb32, width, height, OriginTopLeft)) Fill(image, 0);
}
void ScaleShared(CltImageRef& image, int32_t dpi, CltScaleMode mode)
{
    if (dpi == kCltDesignDpi || image.IsEmpty() || !Readable(*image.Image())) return;
    CltImageRef scaled;
    if (scaled.Create(clt_Scale(image.Width(), dpi), clt_Scale(image.Height(), dpi),
                      OriginTopLeft) &&
        clt_ScaleImage(*image.Image(), *scaled.Image(), mode))
        image = scaled;
}

// An image cannot be moved: it is made again at the new size and the pixels copied back.
void ScalePlain(CltImage& image, int32_t dpi)
{
    if (dpi == kCltDesignDpi || !Readable(image) || !image.ConvertTo(g_pfArgb32)) return;
    CltImage scaled;
    if (!scaled.Create(g_pfArgb32, clt_Scale(image.m_nWidth, dpi), clt_Scale(image.m_nHeight, dpi),
                       OriginTopLeft) ||
        !clt_ScaleImage(image, scaled, ScaleArea) ||
        !image.Create(g_pfArgb32, scaled.m_nWidth, scaled.m_nHeight, OriginTopLeft))
        return;
    for (int32_t y = 0; y < scaled.m_nHeight; ++y)
        memcpy(image.PixelAddress(0, y), scaled.PixelAddress(0, y), size_t(scaled.m_nWidth) * 4);
}
} // namespace

void CTarnSkin::Load(const CltString& dataDir, int32_t dpi)
{
    Release();
    m_pRegion = ReadWholeFile(CLTID_FileStream, PathOf(dataDir, SkinRegionFile).c_str());
    CltImageRef* shared[] = {&background, &active, &inactive, &close, &minimize,
                             &ovrclose,   &ovrmin, &selclose, &selmin};
    CltImage* faces[] = {&unselect, &pressed, &focused};
    for (int id = SkinBackgroundFile; id <= SkinSelectedMinimize; ++id)
        shared[id - SkinBackgroundFile]->LoadFile(PathOf(dataDir, TarnSkinId(id)).c_str());
    for (int id = SkinUnselect; id <= SkinFocused; ++id)
        LoadImageFile(CLTID_FileStream, *faces[id - SkinUnselect],
                      PathOf(dataDir, TarnSkinId(id)).c_str());
    if (background.IsEmpty() || background.Width() <= 0 || background.Height() <= 0)
        MakeFallbackBackground(background);
    for (CltImageRef* image : {&close, &minimize, &ovrclose, &ovrmin, &selclose, &selmin})
        StandInTitleButton(*image);
    int32_t width = kPageButtonWidth, height = kPageButtonHeight;
    for (TarnSkinId id : kTarnFaceSizeOrder)
        if (const CltImage* face = faces[id - SkinUnselect]; Readable(*face))
        {
            width = face->m_nWidth, height = face->m_nHeight;
            break;
        }
    for (CltImage* face : faces)
    {
        StandInPageButton(*face, width, height);
        ScalePlain(*face, dpi);
    }
    for (CltImageRef* image : {&background, &active, &inactive})
        ScaleShared(*image, dpi, ScaleArea);
    for (CltImageRef* image : {&close, &minimize, &ovrclose, &ovrmin, &selclose, &selmin})
        ScaleShared(*image, dpi, ScaleNearest);
}

void CTarnSkin::Release()
{
    for (CltImageRef* image : {&background, &active, &inactive, &close, &minimize, &ovrclose,
                               &ovrmin, &selclose, &selmin})
        image->Release();
    unselect.Clear();
    pressed.Clear();
    focused.Clear();
    if (m_pRegion) m_pRegion->Release();
    m_pRegion = nullptr;
}

HRGN CTarnSkin::CreateRegion(int32_t dpi) const
{
    if (!m_pRegion) return nullptr;
    // The block is two bytes longer than the file; those two never count.
    uint32_t fileSize = m_pRegion->GetSize() - 2;
    const auto* data = static_cast<const uint8_t*>(m_pRegion->Lock());
    uint32_t size = clt_GetRegionDataSize(data, fileSize);
    std::vector<uint8_t> scaled;
    if (size && dpi != kCltDesignDpi)
    {
        scaled.assign(data, data + size);
        clt_ScaleRegionData(scaled.data(), size, dpi);
        data = scaled.data();
    }
    HRGN region =
        size ? ExtCreateRegion(nullptr, size, reinterpret_cast<const RGNDATA*>(data)) : nullptr;
    m_pRegion->Unlock();
    return region;
}
