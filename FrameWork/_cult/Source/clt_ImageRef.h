// CltImageRef: a shared, reference-counted 32-bit image ready for BitBlt: a memory drawing
// context with the image's DIB section selected into it. Copies share one holder; the
// last release unbinds the image from the context and destroys both. An empty reference
// (a file that could not be read) has no image and no context; drawing it draws nothing.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_DC.h"
#include "FrameWork/_cult/Source/clt_DibImage.h"

class CltImageRef
{
  public:
    CltImageRef() = default;
    CltImageRef(const CltImageRef& other);
    CltImageRef& operator=(const CltImageRef& other);
    ~CltImageRef() { Release(); }

    // Reads an image file (BMP or TGA, by its extension) and makes it 32-bit. On failure
    // the reference is empty.
    bool LoadFile(const char* fileName);
    // A new 32-bit image of the size and storage order, bound to a context compatible with
    // reference (the desktop's when null). Its pixels start as zero.
    bool Create(int32_t width, int32_t height, int32_t origin, HDC reference = nullptr);
    void Release();

    bool IsEmpty() const { return m_pHolder == nullptr; }
    CltDibImage* Image() const { return m_pHolder ? &m_pHolder->image : nullptr; }
    HDC Context() const { return m_pHolder ? m_pHolder->dc.Handle() : nullptr; }
    int32_t Width() const { return m_pHolder ? m_pHolder->image.m_nWidth : 0; }
    int32_t Height() const { return m_pHolder ? m_pHolder->image.m_nHeight : 0; }
    int References() const { return m_pHolder ? m_pHolder->refs : 0; }

  private:
    // The context is destroyed first: it puts its original bitmap back before the image's
    // section is deleted.
    struct Holder
    {
        CltDibImage image;
        CltDC dc;
        int refs = 1;
    };
    bool Bind(Holder* holder, HDC reference);

    Holder* m_pHolder = nullptr;
};
