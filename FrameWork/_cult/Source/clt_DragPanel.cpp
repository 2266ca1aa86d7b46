// CltDragPanel: moving the window by dragging a panel.
#include "FrameWork/_cult/Source/clt_DragPanel.h"

void CltDragPanel::OnLButtonDown(uint32_t, int32_t x, int32_t y)
{
    if (!m_bDraggable || m_bDragging || !m_pHost) return;
    m_pHost->CaptureSystemPointer();
    m_pHost->SetCapture(this);
    m_nAnchorX = x;
    m_nAnchorY = y;
    m_bDragging = true;
}

void CltDragPanel::OnMouseMove(uint32_t, int32_t x, int32_t y)
{
    CltRect w;
    if (!m_bDragging || !m_pHost->GetWindowRect(w)) return;
    w.Offset(x - m_nAnchorX, y - m_nAnchorY);
    m_pHost->MoveWindow(w);
}

void CltDragPanel::OnLButtonUp(uint32_t, int32_t, int32_t)
{
    if (!m_bDragging) return;
    m_pHost->ReleaseSystemPointer();
    m_pHost->ReleaseCapture();
    m_bDragging = false;
}
