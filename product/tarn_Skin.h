// CTarnSkin: the skin files of the data folder, read in a fixed order: the window region,
// the background, the eight title-bar images and the three page-button images.
//
// Skin trouble never stops the window. An image file that is missing, empty, truncated or
// unreadable is replaced by a stand-in that draws nothing but keeps the place a player
// clicks: a title button keeps 25 x 23 pixels, a page button the size of the other page
// buttons (or 270 x 40). A caption image that cannot be read leaves the caption bar
// empty. Without a background the window takes the design size and a plain colour;
// without a usable region file it stays rectangular. No byte past the end of the region
// file is read.
//
// On a screen of another DPI than 96 every image is scaled once, as it is loaded, by
// dpi / 96 (the title buttons by nearest pixels, which keeps their key colour; the others
// by area, which keeps edges sharp), and the region's rectangles with them.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_Image.h"
#include "FrameWork/_cult/Source/clt_ImageRef.h"
#include "FrameWork/_cult/Source/clt_String.h"

class CltMemoryBlock;

class CTarnSkin
{
  public:
    // The size the skin is designed for, used when product.bmp cannot be read.
    static constexpr int32_t kFallbackWidth = 500, kFallbackHeight = 460;
    static constexpr uint32_t kFallbackColour = 0xFF1E2630;
    static constexpr int32_t kTitleButtonWidth = 25, kTitleButtonHeight = 23;
    static constexpr int32_t kPageButtonWidth = 270, kPageButtonHeight = 40;

    CTarnSkin() = default;
    CTarnSkin(const CTarnSkin&) = delete;
    CTarnSkin& operator=(const CTarnSkin&) = delete;
    ~CTarnSkin() { Release(); }

    // Reads every file from the folder, in the order of the skin table, for a window of
    // that DPI.
    void Load(const CltString& dataDir, int32_t dpi = 96);
    void Release();
    // The region of product.rgn, or null when the file is missing, shorter than its header
    // says, or refused by the system. The caller owns the region.
    HRGN CreateRegion(int32_t dpi = 96) const;
    bool HasRegionFile() const { return m_pRegion != nullptr; }

    CltImageRef background, active, inactive, close, minimize, ovrclose, ovrmin, selclose, selmin;
    CltImage unselect, pressed, focused;

  private:
    CltMemoryBlock* m_pRegion = nullptr;
};
