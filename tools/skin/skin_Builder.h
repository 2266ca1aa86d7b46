// Building a launcher skin from a publisher's pictures.
//
// The art folder holds pictures named after the skin files (product/tarn_SkinFiles.h; PNG,
// TGA or BMP):
// background (required), active and inactive (the caption bar, 500 x 30), the six title
// buttons (close, minimize, ovrclose, ovrmin, selclose, selmin) and the three page buttons
// (unselect, pressed, focused). Transparent pixels (alpha below 128, or the key colour of
// a picture without alpha) are outside the window or outside the button.
//
// Nothing is written when the art has an error; warnings describe what a player would see
// and do not stop the build.
#pragma once

#include "product/tarn_SkinFiles.h"

#include <cstdint>
#include <string>
#include <vector>

struct SkinOptions
{
    std::string artDir, skinDir;
    bool hasKey = false;
    uint32_t key = 0;             // 0xRRGGBB: transparent in pictures without alpha
    uint32_t matte = 0x000000;    // what the background's soft edges are blended over
    uint32_t titleKey = 0xFF00FF; // the title buttons' key colour, written at (0, 1)
};

struct SkinReport
{
    std::vector<std::string> errors, warnings, written;
    bool Ok() const { return errors.empty(); }
};

// The skin's fixed geometry.
constexpr int32_t kSkinWidth = 500, kCaptionHeight = 30;
constexpr int32_t kTitleButtonWidth = 25, kTitleButtonHeight = 23;
constexpr int32_t kLabelMargin = 10, kPageButtonX = 194, kPageButtonY = 200, kPageButtonStep = 47;
constexpr int kMostPageButtons = 5; // the product's longest page

SkinReport BuildSkin(const SkinOptions& options);

// The art's name of a skin file: the file's name without its extension.
std::string SkinArtName(TarnSkinId id);
