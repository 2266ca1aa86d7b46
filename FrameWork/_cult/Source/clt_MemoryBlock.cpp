// CltMemoryBlock (portable; see clt_MemoryBlock.h).
#include "FrameWork/_cult/Source/clt_MemoryBlock.h"

#include <cstdlib>

bool CltMemoryBlock::Alloc(uint32_t size)
{
    if (m_pData || m_nLocks) return false;
    m_pData = malloc(size ? size : 1);
    if (!m_pData) return false;
    m_nSize = size;
    return true;
}

bool CltMemoryBlock::Realloc(uint32_t size)
{
    if (!m_pData || m_nLocks) return false;
    void* data = realloc(m_pData, size ? size : 1);
    if (!data) return false;
    m_pData = data;
    m_nSize = size;
    return true;
}

void CltMemoryBlock::Free()
{
    if (m_nLocks) return;
    free(m_pData);
    m_pData = nullptr;
    m_nSize = 0;
}

void* CltMemoryBlock::Lock()
{
    if (m_pData) ++m_nLocks;
    return m_pData;
}

void* CltMemoryBlock::Unlock()
{
    if (m_pData && m_nLocks) --m_nLocks;
    return m_pData;
}

uint32_t CltMemoryBlock::GetSize() const
{
    return m_nSize;
}

void CltMemoryBlock::Release()
{
    delete this;
}

// A block destroyed while locked keeps its data alive for whoever still holds the lock.
CltMemoryBlock::~CltMemoryBlock()
{
    Free();
}
