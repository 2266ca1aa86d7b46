// clt_GetKeywordValue (portable).
#include "FrameWork/_cult/Source/clt_Keyword.h"

#include <cstring>

CltString& clt_GetKeywordValue(CltString& out, const char* text)
{
    out = "";
    if (!text) return out;
    const char* colon = strchr(text, ':');
    const char* dollar = strrchr(text, '$');
    if (!colon || !dollar || dollar <= colon) return out;
    const char* begin = colon + 1;
    if (*begin) ++begin; // the blank after the colon
    const char* end = dollar;
    if (end > begin && end[-1] == ' ') --end;
    if (end > begin) out = CltString(begin, uint32_t(end - begin));
    return out;
}
