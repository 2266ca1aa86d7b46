// IniValues: the system's profile reader.
#include "check_Ini.h"

#include <windows.h>

std::string IniValues::String(const char* section, const char* key) const
{
    char value[260] = {};
    GetPrivateProfileStringA(section, key, "", value, sizeof value, m_path.c_str());
    return value;
}

int32_t IniValues::Number(const char* section, const char* key) const
{
    return int32_t(GetPrivateProfileIntA(section, key, kMissingNumber, m_path.c_str()));
}
