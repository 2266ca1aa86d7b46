// Fatal assertions. A failed CLT_ASSERT shows the "Guru meditation failure!" box with the
// condition exactly as written, the source path and the line; Retry adds a box with the
// environment dump; then the process ends with exit code 0, without destructors.
//
// Each source file that asserts names its own path first:
//   #define CLT_SOURCE "FrameWork/_cult/Source/clt_Environment"
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

[[noreturn]] void clt_AssertFailed(const char* expression, const char* file, int line);

// The text of the assertion box.
CltString clt_AssertMessage(const char* expression, const char* file, int line);
// The text of the second box: the environment's dump, or a note that there is none.
CltString clt_AssertDumpText();

#define CLT_ASSERT(cond) CLT_ASSERT_AT(cond, __LINE__)
// For assertions whose reported line number is fixed independently of this file's layout.
#define CLT_ASSERT_AT(cond, line) ((cond) ? (void)0 : clt_AssertFailed(#cond, CLT_SOURCE, (line)))
