// A font as the launcher's window makes its caption and button fonts: weight 400,
// anti-aliased, the default character set. (Windows only.)
#pragma once

#include <windows.h>

#include <cstring>

inline HFONT MakeWidgetFont(const char* face, LONG height)
{
    LOGFONTA lf = {};
    lf.lfHeight = height;
    lf.lfWeight = 400;
    lf.lfQuality = ANTIALIASED_QUALITY;
    lf.lfCharSet = DEFAULT_CHARSET;
    strcpy(lf.lfFaceName, face);
    return CreateFontIndirectA(&lf);
}
