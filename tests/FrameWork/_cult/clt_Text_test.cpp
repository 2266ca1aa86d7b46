// The portable formatter and upper-casing against the system's wvsprintfA and CharUpperA
// (the upper-casing under Wine only: the system's table is the reference).
#include "FrameWork/_cult/Source/clt_Text.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

namespace
{
std::string Portable(const char* format, ...)
{
    char buffer[CLT_FORMAT_BUFFER];
    va_list args;
    va_start(args, format);
    clt_PortableFormatV(buffer, format, args);
    va_end(args);
    return buffer;
}

#ifdef _WIN32
std::string System(const char* format, ...)
{
    char buffer[CLT_FORMAT_BUFFER];
    va_list args;
    va_start(args, format);
    wvsprintfA(buffer, format, args);
    va_end(args);
    return buffer;
}
#define EXPECT_SYSTEM_FORMAT(expected, ...) EXPECT_EQ(System(__VA_ARGS__), expected) << #__VA_ARGS__
#else
#define EXPECT_SYSTEM_FORMAT(expected, ...)
#endif

#define EXPECT_FORMAT(expected, ...)                                                               \
    do                                                                                             \
    {                                                                                              \
        std::string want = (expected);                                                             \
        EXPECT_EQ(Portable(__VA_ARGS__), want) << #__VA_ARGS__;                                    \
        EXPECT_SYSTEM_FORMAT(want, __VA_ARGS__);                                                   \
    } while (0)
} // namespace

TEST(CltFormat, MatchesTheSystemFormatter)
{
    EXPECT_FORMAT("42", "%d", 42);
    EXPECT_FORMAT("-7|-7", "%i|%d", -7, -7);
    EXPECT_FORMAT("   42|42   |00042", "%5d|%-5d|%05d", 42, 42, 42);
    EXPECT_FORMAT("-0042|  -42", "%05d|%5d", -42, -42);
    EXPECT_FORMAT("-0042", "%.5d", -42);
    EXPECT_FORMAT("4294967295", "%u", -1);
    EXPECT_FORMAT("-2147483648", "%d", INT32_MIN);
    EXPECT_FORMAT("ff|FF|0xff|0XFF", "%x|%X|%#x|%#X", 255, 255, 255, 255);
    EXPECT_FORMAT("m_dwOptions is [0x0000000a]\n", "m_dwOptions is [0x%08x]\n", 10);
    EXPECT_FORMAT("        0xff", "%#10x", 255);
    EXPECT_FORMAT("0x000000ff", "%#08x", 255);
    EXPECT_FORMAT("abc|  abc|abc  |ab|     ab", "%s|%5s|%-5s|%.2s|%7.2s", "abc", "abc", "abc",
                  "abc", "abc");
    EXPECT_FORMAT("(null)", "%s", static_cast<const char*>(nullptr));
    EXPECT_FORMAT("ok|  x|y  ", "%c%c|%3c|%-3c", 'o', 'k', 'x', 'y');
    EXPECT_FORMAT("100%", "100%%");
    EXPECT_FORMAT("q|     q|q|", "%q|%5q|%-5q|");
    EXPECT_FORMAT("70000", "%hd", 70000);
    EXPECT_FORMAT("123456", "%ld", 123456L);
    EXPECT_FORMAT("-5000000000|5000000000", "%I64d|%I64u", -5000000000LL, 5000000000LL);
    EXPECT_FORMAT("12", "%I32d", 12);
    EXPECT_FORMAT("LfxMain        \t: 1.03.0114 (2/12/02 5:05p)\n", "%-15s\t: 1.%02d.%04d (%s)\n",
                  "LfxMain", 3, 114, "2/12/02 5:05p");
    EXPECT_FORMAT("Launcher.exe (Build 0003)\n\n", "%s (Build %04d)\n\n", "Launcher.exe", 3);
    EXPECT_FORMAT(std::string(2 * sizeof(void*) - 4, '0') + "12AB", "%p",
                  reinterpret_cast<void*>(0x12AB));
}

#ifdef _WIN32
TEST(CltUpperCase, MatchesCharUpperAForEveryByte)
{
    for (int c = 1; c < 256; ++c)
    {
        char text[2] = {static_cast<char>(c), 0};
        CharUpperA(text);
        EXPECT_EQ(static_cast<unsigned char>(text[0]),
                  clt_PortableUpperChar(static_cast<unsigned char>(c)))
            << "byte " << c;
    }
    char text[] = "install\xE9-\xFF";
    clt_PortableUpperCase(text);
    EXPECT_STREQ(text, "INSTALL\xC9-\x9F");
}
#endif
