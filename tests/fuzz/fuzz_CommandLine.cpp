// Fuzzes the command-line parser: any text is parsed without reading past its end, and
// the environment stays whole.
#include "FrameWork/_cult/Source/clt_CommandLine.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    CltEnvironment env; // records itself as the environment the parser writes to
    int result = clt_ParseCommandLine(text.c_str());
    if (result != 0 && result != 1) abort();
    CltString dump;
    env.Dump(dump);
    if (!env.Has("__UNDEFINED", 1)) abort();
    clt_GetState()->m_pEnv = nullptr;
    return 0;
}
