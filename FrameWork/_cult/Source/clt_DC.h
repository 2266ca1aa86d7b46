// CltDC: holds one memory drawing context and remembers, for every object put into it,
// the object it replaced, on one stack per kind (bitmaps, fonts, brushes, pens). Restore
// puts back one level; Release puts back one level of each kind, bitmaps first, and
// deletes the context only when this holder created it. Also the screen's colour depth.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_IndexList.h"

class CltDC
{
  public:
    enum Kind
    {
        KindBitmap,
        KindFont,
        KindBrush,
        KindPen,
        KindCount
    };

    CltDC() = default;
    CltDC(const CltDC&) = delete;
    CltDC& operator=(const CltDC&) = delete;
    ~CltDC() { Release(); }

    bool CreateCompatible(HDC dc);
    bool CreateForScreen();
    void Select(HBITMAP bitmap) { SelectKind(KindBitmap, bitmap); }
    void Restore() { RestoreKind(KindBitmap); }
    void SelectFont(HFONT font) { SelectKind(KindFont, font); }
    void RestoreFont() { RestoreKind(KindFont); }
    void SelectBrush(HBRUSH brush) { SelectKind(KindBrush, brush); }
    void RestoreBrush() { RestoreKind(KindBrush); }
    void SelectPen(HPEN pen) { SelectKind(KindPen, pen); }
    void RestorePen() { RestoreKind(KindPen); }
    BOOL BitBlt(int x, int y, int w, int h, HDC source, int sx, int sy, DWORD rop) const;
    void Release();

    HDC Handle() const { return m_hDC; }
    bool Owned() const { return m_bOwned != 0; }
    int Depth(Kind kind) const;

  private:
    void SelectKind(Kind kind, HGDIOBJ object);
    void RestoreKind(Kind kind);

    CltIndexList<HGDIOBJ> m_lstStacks[KindCount];
    HDC m_hDC = nullptr;
    int m_bOwned = 0;
};

int GetScreenBitsPerPixel();
