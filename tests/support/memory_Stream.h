// A file stream over bytes in memory, registered as a file-stream component of its own, so
// that readers can be fed any bytes (truncated, corrupt, fuzzed) without files. It counts
// opens, closes and releases so that tests can check the readers' stream discipline.
#pragma once

#include <algorithm>
#include <cstring>

#include "FrameWork/_cult/Source/clt_ComponentRegistry.h"
#include "FrameWork/_cult/Source/clt_FileStream.h"

namespace memstream
{
struct Contents
{
    const uint8_t* data = nullptr;
    size_t size = 0;
    bool refuseOpen = false;
    int opens = 0, closes = 0, releases = 0;
};
inline Contents& Current()
{
    static Contents contents;
    return contents;
}

class Stream : public CltFileStream
{
  public:
    int Open(const char*, uint32_t) override
    {
        if (Current().refuseOpen) return 0;
        ++Current().opens;
        m_open = true;
        m_pos = 0;
        return 1;
    }
    int Close() override
    {
        ++Current().closes;
        m_open = false;
        return 0;
    }
    size_t Read(void* buffer, size_t itemSize, size_t count) override
    {
        if (!m_open || itemSize == 0) return 0;
        size_t left = Current().size - m_pos, items = std::min(count, left / itemSize);
        memcpy(buffer, Current().data + m_pos, items * itemSize);
        m_pos += items * itemSize;
        return items;
    }
    int Seek(int32_t offset, int origin) override
    {
        int64_t base = origin == 0 ? 0 : origin == 1 ? int64_t(Current().size) : int64_t(m_pos);
        if (!m_open || base + offset < 0) return -1;
        m_pos = size_t(base + offset); // past the end is allowed, as with files
        if (m_pos > Current().size) m_pos = Current().size;
        return 0;
    }
    long Tell() override { return m_open ? long(m_pos) : -1; }
    void Release() override
    {
        ++Current().releases;
        delete this;
    }

  private:
    bool m_open = false;
    size_t m_pos = 0;
};

// The id under which the memory stream is registered (on first use).
inline const CltGuid& Id()
{
    static const CltGuid id = {{0x7E, 0x57, 0x00, 0x01, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
    static CltFactoryComponent<Stream> component(CLTCAT_FileStream, id);
    return id;
}

// Makes the bytes the contents of every stream opened from now on.
inline void Use(const void* data, size_t size)
{
    Contents& c = Current();
    c = Contents{};
    c.data = static_cast<const uint8_t*>(data);
    c.size = size;
}
} // namespace memstream
