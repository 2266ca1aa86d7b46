// CltCanvas: the paint target of a paint pass: a bottom-up 32-bit image with the update
// rectangle P at its top-left, in a memory context whose window origin is moved to P's
// top-left, so that GDI drawing into it uses window coordinates. Widgets that work on the
// pixels through the blitter subtract P's top-left themselves (Origin).
// A canvas kept from one paint to the next keeps its image while P fits in it: fresh
// memory for each paint costs more than composing the paint (every page of it faults in).
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_ImageRef.h"

class CltCanvas
{
  public:
    // Makes the canvas ready for a paint of area, with an image of the area's size when the
    // one it has is smaller. False when the image or its context could not be made (then
    // nothing can be drawn).
    bool Begin(const CltRect& area, HDC reference);
    void Release() { m_Image.Release(); }

    HDC Context() const { return m_Image.Context(); }
    // The pixels, for the blitter: GDI's pending drawing into the canvas is finished first.
    CltDibImage* Pixels() const;
    const CltRect& Origin() const { return m_Origin; }

  private:
    CltImageRef m_Image;
    CltRect m_Origin;
};
