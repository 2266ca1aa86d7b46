// Values of version-control keyword texts such as "$Revision: 24 $".
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

// The value starts two characters after the first ':' and ends before the blank in front
// of the last '$'. A text without a ':' or a closing " $" gives the empty string.
CltString& clt_GetKeywordValue(CltString& out, const char* text);
