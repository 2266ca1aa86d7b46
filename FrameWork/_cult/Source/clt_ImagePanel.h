// CltImagePanel: a drag panel that shows a shared image, copied from a source position
// over the whole rectangle.
// (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_DragPanel.h"
#include "FrameWork/_cult/Source/clt_ImageRef.h"

class CltImagePanel : public CltDragPanel
{
  public:
    void SetImage(const CltImageRef& image, int32_t x, int32_t y);
    void Paint(CltCanvas& canvas, const CltRect& area) override;

  private:
    CltImageRef m_Image;
    int32_t m_nSourceX = 0, m_nSourceY = 0;
};

extern CltWidgetFactoryOf<CltImagePanel> g_ImagePanelFactory;
