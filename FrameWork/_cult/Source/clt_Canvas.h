// CltCanvas: the paint target of one paint pass: a bottom-up 32-bit image of the update
// rectangle P in a memory context whose window origin is moved to P's top-left, so that
// GDI drawing into it uses window coordinates. Widgets that work on the pixels through
// the blitter subtract P's top-left themselves (Origin).
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_ImageRef.h"

class CltCanvas
{
  public:
    // False when the image or its context could not be made (then nothing can be drawn).
    bool Create(const CltRect& area, HDC reference);

    HDC Context() const { return m_Image.Context(); }
    // The pixels, for the blitter: GDI's pending drawing into the canvas is finished first.
    CltDibImage* Pixels() const;
    const CltRect& Origin() const { return m_Origin; }

  private:
    CltImageRef m_Image;
    CltRect m_Origin;
};
