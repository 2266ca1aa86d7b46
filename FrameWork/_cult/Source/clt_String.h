// CltString: the framework's text type.
//
// One pointer per string; null for the empty string. A non-empty string points at
// its first character, and a header (length, capacity, reference count, lock count,
// character pointer) lies right in front of the characters in the same heap block.
// Blocks are shared between copies and copied on write. A block whose lock count is
// above zero (a writable buffer is out) is never shared: copies of it are deep.
// All texts are 8-bit ANSI; lengths count bytes.
#pragma once

#include <cstdarg>
#include <cstdint>

struct CltStringHeader
{
    uint32_t nLength;   // characters, without the terminator
    uint32_t nCapacity; // characters the block holds, without the terminator
    uint16_t nRefs;     // strings sharing this block
    uint16_t nLocks;    // writable buffers handed out and not yet given back
    char* pChars;       // the characters: the bytes right after this header
};

class CltString
{
  public:
    constexpr CltString() : m_pch(nullptr) {}
    CltString(const char* text);
    CltString(const char* text, uint32_t length);
    CltString(const CltString& other);
    ~CltString();

    CltString& operator=(const CltString& other);
    CltString& operator=(const char* text);

    bool empty() const { return length() == 0; }
    uint32_t length() const { return m_pch ? Header()->nLength : 0; }
    const char* c_str() const { return m_pch ? m_pch : ""; }

    CltString& operator+=(const CltString& other);
    CltString& operator+=(const char* text);
    friend CltString operator+(const CltString& a, const CltString& b);
    friend CltString operator+(const CltString& a, const char* b);
    friend CltString operator+(const char* a, const CltString& b);

    // Equal when both share one block, or both are non-empty with the same characters.
    // An empty string equals no string, not even another empty one.
    bool operator==(const CltString& other) const;
    bool operator!=(const CltString& other) const { return !(*this == other); }

    void make_upper();
    int format(const char* fmt, ...);
    int formatV(const char* fmt, va_list args);

    char* get_buffer(uint32_t minCapacity);
    void release_buffer();

    int find(const char* text) const;
    int find_last(const char* text) const;
    CltString mid(int start, int count = -1) const;

    // Read access for tests and diagnostics.
    const CltStringHeader* Header() const
    {
        return m_pch ? reinterpret_cast<const CltStringHeader*>(m_pch) - 1 : nullptr;
    }

  private:
    CltStringHeader* Hdr()
    {
        return m_pch ? reinterpret_cast<CltStringHeader*>(m_pch) - 1 : nullptr;
    }
    static char* NewBlock(uint32_t capacity);
    void ReleaseBlock();
    void Assign(const char* text, uint32_t length);
    void MakeUnshared(uint32_t capacity);
    void Append(const char* text, uint32_t length);

    char* m_pch;
};
