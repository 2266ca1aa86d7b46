// CltString: shared, copy-on-write text blocks (see clt_String.h for the layout).
#include "FrameWork/_cult/Source/clt_String.h"

#include "FrameWork/_cult/Source/clt_Text.h"

#include <cstdlib>
#include <cstring>

namespace
{
uint32_t TextLength(const char* text)
{
    return text ? static_cast<uint32_t>(strlen(text)) : 0;
}
} // namespace

char* CltString::NewBlock(uint32_t capacity)
{
    auto* header =
        static_cast<CltStringHeader*>(malloc(sizeof(CltStringHeader) + size_t(capacity) + 1));
    if (!header) abort();
    header->nLength = 0;
    header->nCapacity = capacity;
    header->nRefs = 1;
    header->nLocks = 0;
    header->pChars = reinterpret_cast<char*>(header + 1);
    header->pChars[0] = 0;
    return header->pChars;
}

void CltString::ReleaseBlock()
{
    CltStringHeader* header = Hdr();
    m_pch = nullptr;
    if (header && --header->nRefs == 0) free(header);
}

CltString::CltString(const char* text) : m_pch(nullptr)
{
    Assign(text, TextLength(text));
}

CltString::CltString(const char* text, uint32_t length) : m_pch(nullptr)
{
    Assign(text, length);
}

CltString::CltString(const CltString& other) : m_pch(nullptr)
{
    *this = other;
}

CltString::~CltString()
{
    ReleaseBlock();
}

CltString& CltString::operator=(const CltString& other)
{
    if (this == &other || m_pch == other.m_pch) return *this;
    const CltStringHeader* source = other.Header();
    // A locked block is being written through a buffer and must not be shared; a block
    // whose reference count is at its limit cannot take one more sharer.
    if (source && (source->nLocks > 0 || source->nRefs == UINT16_MAX))
    {
        CltString copy(other.m_pch, source->nLength);
        *this = copy;
        return *this;
    }
    ReleaseBlock();
    if (source)
    {
        m_pch = other.m_pch;
        ++Hdr()->nRefs;
    }
    return *this;
}

CltString& CltString::operator=(const char* text)
{
    Assign(text, TextLength(text));
    return *this;
}

void CltString::Assign(const char* text, uint32_t length)
{
    if (length == 0)
    {
        ReleaseBlock();
        return;
    }
    CltStringHeader* header = Hdr();
    // The text may lie inside this string's own block; copy through memmove.
    if (header && header->nRefs == 1 && header->nLocks == 0 && header->nCapacity >= length)
    {
        memmove(m_pch, text, length);
    }
    else
    {
        char* block = NewBlock(length);
        memcpy(block, text, length);
        ReleaseBlock();
        m_pch = block;
    }
    Hdr()->nLength = length;
    m_pch[length] = 0;
}

// Gives this string a block of its own with room for 'capacity' characters, keeping its
// characters. A new block is made exactly as large as needed; an unshared, unlocked block
// that is large enough is kept.
void CltString::MakeUnshared(uint32_t capacity)
{
    CltStringHeader* header = Hdr();
    if (header && header->nRefs == 1 && header->nLocks == 0 && header->nCapacity >= capacity)
        return;
    uint32_t length = header ? header->nLength : 0;
    if (capacity < length) capacity = length;
    char* block = NewBlock(capacity);
    if (length) memcpy(block, m_pch, length);
    block[length] = 0;
    reinterpret_cast<CltStringHeader*>(block)[-1].nLength = length;
    ReleaseBlock();
    m_pch = block;
}

void CltString::Append(const char* text, uint32_t n)
{
    if (n == 0) return;
    uint32_t length = this->length();
    CltString keep(*this); // keeps 'text' alive when it points into this block
    MakeUnshared(length + n);
    memmove(m_pch + length, text, n);
    m_pch[length + n] = 0;
    Hdr()->nLength = length + n;
}

CltString& CltString::operator+=(const CltString& other)
{
    Append(other.c_str(), other.length());
    return *this;
}

CltString& CltString::operator+=(const char* text)
{
    Append(text, TextLength(text));
    return *this;
}

CltString operator+(const CltString& a, const CltString& b)
{
    CltString r(a);
    r += b;
    return r;
}

CltString operator+(const CltString& a, const char* b)
{
    CltString r(a);
    r += b;
    return r;
}

CltString operator+(const char* a, const CltString& b)
{
    CltString r(a);
    r += b;
    return r;
}

bool CltString::operator==(const CltString& other) const
{
    if (m_pch && m_pch == other.m_pch) return true;
    if (empty() || other.empty()) return false;
    return length() == other.length() && memcmp(m_pch, other.m_pch, length()) == 0;
}

void CltString::make_upper()
{
    if (empty()) return;
    MakeUnshared(length());
    clt_UpperCase(m_pch);
}

int CltString::format(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    int n = formatV(fmt, args);
    va_end(args);
    return n;
}

int CltString::formatV(const char* fmt, va_list args)
{
    // Format into a private buffer first: an argument may be this very string.
    char buffer[CLT_FORMAT_BUFFER];
    va_list ap;
    va_copy(ap, args);
    clt_FormatV(buffer, fmt, ap);
    va_end(ap);
    buffer[CLT_FORMAT_BUFFER - 1] = 0;
    uint32_t n = TextLength(buffer);
    ReleaseBlock();
    if (n == 0) return 0;
    m_pch = NewBlock(CLT_FORMAT_BUFFER);
    memcpy(m_pch, buffer, size_t(n) + 1);
    Hdr()->nLength = n;
    return static_cast<int>(n);
}

char* CltString::get_buffer(uint32_t minCapacity)
{
    MakeUnshared(minCapacity);
    CltStringHeader* header = Hdr();
    if (header->nLocks < UINT16_MAX) ++header->nLocks;
    return m_pch;
}

void CltString::release_buffer()
{
    CltStringHeader* header = Hdr();
    if (!header) return;
    if (header->nLocks > 0) --header->nLocks;
    m_pch[header->nCapacity] = 0; // the text written may have filled every character
    header->nLength = TextLength(m_pch);
    if (header->nLength == 0 && header->nLocks == 0 && header->nRefs == 1) ReleaseBlock();
}

int CltString::find(const char* text) const
{
    if (empty() || !text) return -1;
    const char* hit = strstr(m_pch, text);
    return hit ? static_cast<int>(hit - m_pch) : -1;
}

int CltString::find_last(const char* text) const
{
    if (empty() || !text) return -1;
    uint32_t n = TextLength(text);
    uint32_t length = this->length();
    if (n > length) return -1;
    for (uint32_t i = length - n + 1; i-- > 0;)
        if (memcmp(m_pch + i, text, n) == 0) return static_cast<int>(i);
    return -1;
}

CltString CltString::mid(int start, int count) const
{
    uint32_t length = this->length();
    if (start < 0) start = 0;
    if (static_cast<uint32_t>(start) >= length) return *this;
    uint32_t rest = length - static_cast<uint32_t>(start);
    uint32_t n = (count < 0 || static_cast<uint32_t>(count) > rest) ? rest : uint32_t(count);
    return CltString(m_pch + start, n);
}
