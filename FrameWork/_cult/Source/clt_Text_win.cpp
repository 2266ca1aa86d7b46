// The system's own upper-casing and formatting, used by the framework on Windows.
#include "FrameWork/_cult/Source/clt_Text.h"

#include <windows.h>

void clt_UpperCase(char* text)
{
    CharUpperA(text);
}

int clt_FormatV(char* buffer, const char* format, va_list args)
{
    return wvsprintfA(buffer, format, args);
}
