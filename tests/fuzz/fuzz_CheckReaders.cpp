// The product checker's readers on any bytes: the scan of setup.ini's lines (FUZZ_INI) or
// the wave-file check. Neither may read outside the input or fail to end.
#include "check_IniScan.h"
#include "check_Sounds.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
#ifdef FUZZ_INI
    IniScan scan = ScanIni(std::string_view(reinterpret_cast<const char*>(data), size));
    for (const IniKeyLine& key : scan.keys)
        scan.FindKey(key.section, key.key);
#else
    WaveProblem(data, size);
#endif
    return 0;
}
