// Page defaults. Until the main window exists there is no window root to put buttons
// on, so Show and Hide have nothing to create or remove.
#include "FrameWork/_lfx/Source/lfx_Page.h"

CltString LfxPage::GetVariant()
{
    return CltString();
}
int LfxPage::OnAttach()
{
    return 1;
}
LfxPage::~LfxPage() = default;

int LfxButtonPage::Show()
{
    return 1;
}

int LfxButtonPage::Hide(bool)
{
    return 0;
}

void LfxButtonPage::RemoveButton(uint32_t command)
{
    uint32_t c = command & 0xFFFF;
    if (c <= kMaxEntries) m_aRemoved[c] = -1;
}
