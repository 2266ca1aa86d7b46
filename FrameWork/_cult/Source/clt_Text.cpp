// Portable upper-casing (Windows-1252) and a wvsprintfA-compatible formatter.
//
// Formatter grammar: %[-][#][0][width][.precision][l|h|w|I|I32|I64]type with the
// types c C d i s S u x X p; %% is a percent sign; an unknown type prints the padding
// the width asks for and then the character itself as plain text. '#' puts 0x or 0X in
// front of hexadecimal numbers without counting it in the width. A null text prints
// "(null)". The output stops at 1023 characters; nothing beyond the buffer is written.
#include "FrameWork/_cult/Source/clt_Text.h"

#include <cstdint>
#include <cstring>

unsigned char clt_PortableUpperChar(unsigned char c)
{
    if (c >= 'a' && c <= 'z') return static_cast<unsigned char>(c - 0x20);
    switch (c)
    {
    case 0x9A: return 0x8A; // s caron
    case 0x9C: return 0x8C; // oe ligature
    case 0x9E: return 0x8E; // z caron
    case 0xFF: return 0x9F; // y diaeresis
    default: break;
    }
    if (c >= 0xE0 && c != 0xF7) return static_cast<unsigned char>(c - 0x20);
    return c;
}

void clt_PortableUpperCase(char* text)
{
    for (; *text; ++text)
        *text = static_cast<char>(clt_PortableUpperChar(static_cast<unsigned char>(*text)));
}

namespace
{
// Collects output and silently drops what does not fit in 1023 characters.
class BoundedWriter
{
  public:
    explicit BoundedWriter(char* buffer) : m_buffer(buffer) {}
    void Put(char c)
    {
        if (m_n < CLT_FORMAT_BUFFER - 1) m_buffer[m_n++] = c;
    }
    void Put(const char* text, size_t n)
    {
        for (size_t i = 0; i < n; ++i)
            Put(text[i]);
    }
    void Repeat(char c, long count)
    {
        for (long i = 0; i < count; ++i)
            Put(c);
    }
    bool Full() const { return m_n >= CLT_FORMAT_BUFFER - 1; }
    int Finish()
    {
        m_buffer[m_n] = 0;
        return static_cast<int>(m_n);
    }

  private:
    char* m_buffer;
    size_t m_n = 0;
};

enum FieldFlags : unsigned
{
    LEFT = 1,
    PREFIX = 2,
    ZERO = 4,
    LONG = 8,
    SHORT = 16,
    WIDE = 32,
    INTPTR = 64,
    I64 = 128,
    UPPER = 256,
};

enum class FieldType
{
    Unknown,
    Char,
    WideChar,
    Text,
    WideText,
    Signed,
    Unsigned,
    Hex
};

struct Field
{
    unsigned flags = 0;
    long width = 0;
    long precision = 0;
    FieldType type = FieldType::Unknown;
};

// Parses the field after '%'; returns the characters it used. An unknown type
// character is not used, so that it is printed as plain text afterwards.
size_t ParseField(const char* p0, Field& f)
{
    const char* p = p0;
    if (*p == '-') f.flags |= LEFT, ++p;
    if (*p == '#') f.flags |= PREFIX, ++p;
    if (*p == '0') f.flags |= ZERO, ++p;
    for (; *p >= '0' && *p <= '9'; ++p)
        if (f.width < 100000) f.width = f.width * 10 + (*p - '0');
    if (*p == '.')
        for (++p; *p >= '0' && *p <= '9'; ++p)
            if (f.precision < 100000) f.precision = f.precision * 10 + (*p - '0');
    if (*p == 'l')
        f.flags |= LONG, ++p;
    else if (*p == 'h')
        f.flags |= SHORT, ++p;
    else if (*p == 'w')
        f.flags |= WIDE, ++p;
    else if (*p == 'I')
    {
        if (p[1] == '6' && p[2] == '4')
            f.flags |= I64, p += 3;
        else if (p[1] == '3' && p[2] == '2')
            p += 3;
        else
            f.flags |= INTPTR, ++p;
    }
    switch (*p)
    {
    case 'c': f.type = (f.flags & LONG) ? FieldType::WideChar : FieldType::Char; break;
    case 'C': f.type = (f.flags & SHORT) ? FieldType::Char : FieldType::WideChar; break;
    case 'd':
    case 'i': f.type = FieldType::Signed; break;
    case 's': f.type = (f.flags & (LONG | WIDE)) ? FieldType::WideText : FieldType::Text; break;
    case 'S': f.type = (f.flags & (SHORT | WIDE)) ? FieldType::Text : FieldType::WideText; break;
    case 'u': f.type = FieldType::Unsigned; break;
    case 'p':
        f.width = 2 * sizeof(void*);
        f.flags |= ZERO | INTPTR | UPPER;
        f.type = FieldType::Hex;
        break;
    case 'X':
        f.flags |= UPPER;
        f.type = FieldType::Hex;
        break;
    case 'x': f.type = FieldType::Hex; break;
    default: f.type = FieldType::Unknown; return static_cast<size_t>(p - p0);
    }
    return static_cast<size_t>(p - p0) + 1;
}

// Writes a number field: digits into 'digits', sign separately.
void PutNumber(BoundedWriter& out, Field& f, va_list& args)
{
    int64_t value;
    if (f.flags & INTPTR)
        value = static_cast<int64_t>(va_arg(args, intptr_t));
    else if (f.flags & I64)
        value = static_cast<int64_t>(va_arg(args, long long));
    else if (f.flags & LONG)
        value = static_cast<int32_t>(va_arg(args, long));
    else
        value = va_arg(args, int);

    bool negative = f.type == FieldType::Signed && value < 0;
    uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    if (f.flags & INTPTR)
        magnitude = static_cast<uintptr_t>(magnitude);
    else if (!(f.flags & I64))
        magnitude = static_cast<uint32_t>(magnitude);

    const char* alphabet = (f.flags & UPPER) ? "0123456789ABCDEF" : "0123456789abcdef";
    unsigned base = f.type == FieldType::Hex ? 16 : 10;
    char reversed[24];
    size_t nDigits = 0;
    do
    {
        reversed[nDigits++] = alphabet[magnitude % base];
        magnitude /= base;
    } while (magnitude);

    if (f.flags & LEFT) f.flags &= ~ZERO;
    long len = static_cast<long>(nDigits) + (negative ? 1 : 0);
    long body = f.precision > len ? f.precision : len; // sign, zeros and digits
    if ((f.flags & ZERO) && f.width > body) body = f.width;
    long pad = f.width - body;

    if (!(f.flags & LEFT)) out.Repeat(' ', pad);
    if (f.type == FieldType::Hex && (f.flags & PREFIX))
    {
        out.Put('0');
        out.Put((f.flags & UPPER) ? 'X' : 'x');
    }
    if (negative) out.Put('-');
    out.Repeat('0', body - len);
    while (nDigits)
        out.Put(reversed[--nDigits]);
    if (f.flags & LEFT) out.Repeat(' ', pad);
}

void PutText(BoundedWriter& out, Field& f, va_list& args)
{
    char one[2] = {0, 0};
    const char* text = nullptr;
    const uint16_t* wide = nullptr;
    long len = 0;
    switch (f.type)
    {
    case FieldType::Char:
        one[0] = static_cast<char>(va_arg(args, int));
        text = one;
        len = 1;
        break;
    case FieldType::WideChar:
        one[0] = static_cast<char>(static_cast<uint16_t>(va_arg(args, int)));
        text = one;
        len = 1;
        break;
    case FieldType::Text:
        text = va_arg(args, const char*);
        if (!text) text = "(null)";
        while (text[len] && (!f.precision || len < f.precision))
            ++len;
        break;
    case FieldType::WideText:
        wide = va_arg(args, const uint16_t*);
        if (!wide)
        {
            text = "(null)";
            while (text[len] && (!f.precision || len < f.precision))
                ++len;
        }
        else
            while (wide[len] && (!f.precision || len < f.precision))
                ++len;
        break;
    default: break;
    }
    long pad = f.width - len;
    if (!(f.flags & LEFT)) out.Repeat(' ', pad);
    for (long i = 0; i < len; ++i)
        out.Put(text ? text[i] : (wide[i] < 0x80 ? static_cast<char>(wide[i]) : '?'));
    if (f.flags & LEFT) out.Repeat(' ', pad);
}
} // namespace

int clt_PortableFormatV(char* buffer, const char* format, va_list args)
{
    BoundedWriter out(buffer);
    va_list ap;
    va_copy(ap, args);
    const char* p = format;
    while (*p && !out.Full())
    {
        if (*p != '%')
        {
            out.Put(*p++);
            continue;
        }
        ++p;
        if (*p == '%')
        {
            out.Put(*p++);
            continue;
        }
        Field f;
        p += ParseField(p, f);
        switch (f.type)
        {
        case FieldType::Signed:
        case FieldType::Unsigned:
        case FieldType::Hex: PutNumber(out, f, ap); break;
        case FieldType::Unknown:
            if (!(f.flags & LEFT)) out.Repeat(' ', f.width);
            break;
        default: PutText(out, f, ap); break;
        }
    }
    va_end(ap);
    return out.Finish();
}

#ifndef _WIN32
void clt_UpperCase(char* text)
{
    clt_PortableUpperCase(text);
}
int clt_FormatV(char* buffer, const char* format, va_list args)
{
    return clt_PortableFormatV(buffer, format, args);
}
#endif
