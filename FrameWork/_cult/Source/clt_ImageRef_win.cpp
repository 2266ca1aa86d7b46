// CltImageRef: shared images bound to memory drawing contexts.
#include "FrameWork/_cult/Source/clt_ImageRef.h"

#include "FrameWork/_cult/Source/clt_ImageFile.h"

CltImageRef::CltImageRef(const CltImageRef& other) : m_pHolder(other.m_pHolder)
{
    if (m_pHolder) ++m_pHolder->refs;
}

CltImageRef& CltImageRef::operator=(const CltImageRef& other)
{
    if (other.m_pHolder) ++other.m_pHolder->refs;
    Release();
    m_pHolder = other.m_pHolder;
    return *this;
}

void CltImageRef::Release()
{
    Holder* holder = m_pHolder;
    m_pHolder = nullptr;
    if (holder && --holder->refs == 0) delete holder;
}

// Selects the holder's image into a new context compatible with reference (or the
// desktop's) and takes the holder; destroys the holder on failure.
bool CltImageRef::Bind(Holder* holder, HDC reference)
{
    bool made = reference ? holder->dc.CreateCompatible(reference) : holder->dc.CreateForScreen();
    if (!made)
    {
        delete holder;
        return false;
    }
    holder->dc.Select(holder->image.m_hBitmap);
    m_pHolder = holder;
    return true;
}

bool CltImageRef::LoadFile(const char* fileName)
{
    Release();
    Holder* holder = new Holder;
    bool loaded = LoadImageFile(CLTID_FileStream, holder->image, fileName);
    if (loaded) holder->image.StoreLeftToRight();
    if (!loaded || !holder->image.ConvertTo(g_pfArgb32) || !holder->image.m_hBitmap)
    {
        delete holder;
        return false;
    }
    return Bind(holder, nullptr);
}

bool CltImageRef::Create(int32_t width, int32_t height, int32_t origin, HDC reference)
{
    Release();
    Holder* holder = new Holder;
    if (!holder->image.Create(g_pfArgb32, width, height, origin))
    {
        delete holder;
        return false;
    }
    return Bind(holder, reference);
}
