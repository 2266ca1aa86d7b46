// CltMemoryBlock: a heap block with a lock count. While locked it is neither freed nor
// resized; Alloc works only on an empty block, Realloc only on one that holds data.
#pragma once

#include <cstddef>
#include <cstdint>

class CltMemoryBlock
{
  public:
    CltMemoryBlock() = default;
    CltMemoryBlock(const CltMemoryBlock&) = delete;
    CltMemoryBlock& operator=(const CltMemoryBlock&) = delete;

    virtual bool Alloc(uint32_t size);
    virtual bool Realloc(uint32_t size);
    virtual void Free();
    virtual void* Lock();
    virtual void* Unlock();
    virtual uint32_t GetSize() const;
    virtual void Release();
    virtual ~CltMemoryBlock();

    uint32_t LockCount() const { return m_nLocks; }

  private:
    void* m_pData = nullptr;
    uint32_t m_nLocks = 0;
    uint32_t m_nSize = 0;
};
