// CltFileStream: a thin object around a buffered standard file stream, made through the
// component registry. Open takes a mode word instead of a mode text:
//   read 1, write 2, keep 4 (append or update instead of truncate), text 0x100;
//   read -> "r", write -> "w", write+keep -> "a", read+write -> "w+", all three -> "r+",
//   then "t" for text or "b"; neither read nor write fails. Other bits are ignored.
// Seek's origin: 0 from the start, 1 from the end, 2 from the current position.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

class CltFileStream
{
  public:
    static constexpr uint32_t kRead = 1, kWrite = 2, kKeep = 4, kText = 0x100;

    CltFileStream() = default;
    CltFileStream(const CltFileStream&) = delete;
    CltFileStream& operator=(const CltFileStream&) = delete;

    virtual int Open(const char* name, uint32_t mode);
    virtual int Close();
    virtual size_t Read(void* buffer, size_t itemSize, size_t count);
    virtual size_t Write(const void* buffer, size_t itemSize, size_t count);
    virtual int Seek(int32_t offset, int origin);
    virtual long Tell();
    virtual CltFileStream* New();
    virtual void Release();
    virtual ~CltFileStream();

    // The mode text for a mode word, or null when the word opens nothing.
    static const char* ModeText(uint32_t mode, char out[4]);

  private:
    FILE* m_pFile = nullptr;
};
