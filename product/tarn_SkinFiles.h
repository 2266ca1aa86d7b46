// The skin files of a product's data folder: the one list that the launcher's skin loader,
// the skin builder (and the demo's art, by the same names without the extension), the
// product checker and the build's list of demo files read. Each file's name, the part of
// the window it paints, and what a player sees when the launcher cannot use it. The
// launcher reads them in this order.
#pragma once

enum TarnSkinPart : int
{
    SkinRegion,      // the window's shape
    SkinBackground,  // the window's picture, which gives its size
    SkinCaption,     // the caption bar, 500 x 30, active and inactive
    SkinTitleButton, // colour-keyed, read at (0, 1)
    SkinPageFace,    // the three looks of a page button, one size
};

enum TarnSkinId : int
{
    SkinRegionFile,
    SkinBackgroundFile,
    SkinActive,
    SkinInactive,
    SkinClose,
    SkinMinimize,
    SkinOverClose,
    SkinOverMinimize,
    SkinSelectedClose,
    SkinSelectedMinimize,
    SkinUnselect,
    SkinPressed,
    SkinFocused,
    SkinFileCount
};

struct TarnSkinFile
{
    const char* name;
    TarnSkinPart part;
    const char* without; // what a player sees when the launcher cannot use the file
};

// By TarnSkinId.
inline constexpr TarnSkinFile kTarnSkinFiles[SkinFileCount] = {
    {"product.rgn", SkinRegion, "the window is a plain rectangle"},
    {"product.bmp", SkinBackground, "the window is 500 x 460 in a plain dark colour"},
    {"active.tga", SkinCaption, "the caption bar shows the background while the window is active"},
    {"inactive.tga", SkinCaption,
     "the caption bar shows the background while the window is inactive"},
    {"close.tga", SkinTitleButton, "the close button is invisible while the pointer is elsewhere"},
    {"minimize.tga", SkinTitleButton,
     "the minimise button is invisible while the pointer is elsewhere"},
    {"ovrclose.tga", SkinTitleButton, "the close button is invisible while the pointer is over it"},
    {"ovrmin.tga", SkinTitleButton,
     "the minimise button is invisible while the pointer is over it"},
    {"selclose.tga", SkinTitleButton, "the close button is invisible while it is held down"},
    {"selmin.tga", SkinTitleButton, "the minimise button is invisible while it is held down"},
    {"unselect.tga", SkinPageFace, "page buttons show only their labels in their normal look"},
    {"pressed.tga", SkinPageFace, "page buttons show only their labels while pressed"},
    {"focused.tga", SkinPageFace, "page buttons show only their labels while focused"},
};

// A missing page face takes the size of the first of these that can be read.
inline constexpr TarnSkinId kTarnFaceSizeOrder[] = {SkinUnselect, SkinFocused, SkinPressed};
