// CltDragPanel: a panel with which the user can move the whole window by dragging it with
// the left button (when draggable). The window moves by the pointer's offset from where
// the drag began, measured against the window's current position at every move.
#pragma once

#include "FrameWork/_cult/Source/clt_Widget.h"

class CltDragPanel : public CltWidget
{
  public:
    void SetDraggable(bool draggable) { m_bDraggable = draggable; }
    bool IsDragging() const { return m_bDragging; }

    void OnLButtonDown(uint32_t flags, int32_t x, int32_t y) override;
    void OnMouseMove(uint32_t flags, int32_t x, int32_t y) override;
    void OnLButtonUp(uint32_t flags, int32_t x, int32_t y) override;

  protected:
    bool m_bDraggable = false;
    bool m_bDragging = false;
    int32_t m_nAnchorX = 0, m_nAnchorY = 0;
};
