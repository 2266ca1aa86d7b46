// What the launcher core's files share: the name its assertions report as their source,
// its trace prefix and the executable's path. Used by lfx_*.cpp only. (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

// The assertion texts name the launcher core as one source file, whichever of its files
// holds the assertion; the line numbers are given with each assertion.
#define CLT_SOURCE "FrameWork/_lfx/Source/lfx_System"

namespace lfx_core
{
// Traces "LfxMain: ", then the message, as two texts.
void Trace(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
// The full path of the running executable.
CltString ModulePath();
} // namespace lfx_core
