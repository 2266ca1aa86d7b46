// JoinPath and NormaliseFolder (portable).
#include "FrameWork/_lfx/Source/lfx_Path.h"

CltString NormaliseFolder(const CltString& folder)
{
    const char* s = folder.c_str();
    uint32_t n = folder.length();
    if (n < 4 && n >= 2 && s[1] == ':')
    {
        char root[4] = {s[0], ':', '\\', 0};
        return CltString(root);
    }
    if (n > 0 && s[n - 1] == '\\') return CltString(s, n - 1);
    return folder;
}

CltString JoinPath(const CltString& folder, const CltString& name)
{
    if (name.empty()) return folder;
    if (folder.empty()) return NormaliseFolder(name);
    bool folderEnds = folder.c_str()[folder.length() - 1] == '\\';
    bool nameBegins = name.c_str()[0] == '\\';
    if (folderEnds && nameBegins) return folder + (name.c_str() + 1);
    if (folderEnds || nameBegins) return folder + name;
    return folder + "\\" + name;
}
