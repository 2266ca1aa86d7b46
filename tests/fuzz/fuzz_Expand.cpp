// Fuzzes Expand: the first line of the input is a value for the names A and a long
// name; the rest is the text to expand. The result never exceeds 1023 characters and a
// text without '$' comes back unchanged.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string input(reinterpret_cast<const char*>(data), size);
    input = input.c_str(); // texts end at their first zero byte
    size_t newline = input.find('\n');
    std::string value = newline == std::string::npos ? "" : input.substr(0, newline);
    std::string text = newline == std::string::npos ? input : input.substr(newline + 1);

    CltEnvironment env;
    env.Set("A", value.c_str(), false);
    env.Set(std::string(1100, 'N').c_str(), value.c_str(), false);
    CltString out;
    env.Expand(out, text.c_str());
    if (out.length() > 1023) abort();
    if (text.find('$') == std::string::npos && text.size() <= 1023 && text != out.c_str()) abort();
    clt_GetState()->m_pEnv = nullptr;
    return 0;
}
