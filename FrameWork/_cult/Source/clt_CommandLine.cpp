// Command-line syntax: blanks (the space character only) and switches. A switch is '-' or
// '/', a name (the longest run of ASCII letters and digits), and optionally '=' and a
// value: a double-quoted text running to the next double quote or the end, or otherwise
// the text up to the next blank. Exactly one character after a switch is consumed
// whatever it is, so "-A-B" stores A and stops at B. A character that begins no switch
// ends the parse. Names and values are cut at 1023 characters; a switch with an empty name
// is read and ignored.
#include "FrameWork/_cult/Source/clt_CommandLine.h"

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Text.h"

namespace
{
constexpr size_t kBuffer = 1024;

bool IsNameChar(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}
} // namespace

int clt_ParseCommandLine(const char* text)
{
    CltEnvironment* env = clt_GetState()->m_pEnv;
    if (!env) return 1;
    const char* p = text ? text : "";
    char name[kBuffer];
    char value[kBuffer];
    for (;;)
    {
        if (*p == 0) return 1;
        if (*p == ' ')
        {
            ++p;
            continue;
        }
        if (*p != '-' && *p != '/') return 0;
        ++p;

        size_t nName = 0;
        for (; IsNameChar(*p); ++p)
            if (nName < kBuffer - 1) name[nName++] = *p;
        name[nName] = 0;
        clt_UpperCase(name);

        size_t nValue = 0;
        if (*p == '=')
        {
            ++p;
            char end = ' ';
            if (*p == '"')
            {
                ++p;
                end = '"';
            }
            for (; *p && *p != end; ++p)
                if (nValue < kBuffer - 1) value[nValue++] = *p;
        }
        value[nValue] = 0;

        if (nName) env->Set(name, value, false);
        if (*p == 0) return 1;
        ++p; // the character that ended the switch
    }
}
