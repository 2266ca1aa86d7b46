// The product checker's skin check on any bytes as one skin file of an otherwise empty data
// folder: the first byte picks the file (a picture, or the region file read against the
// background's size), the rest is its content. The check must end with its report lines,
// whatever the file holds.
#include "check_Report.h"
#include "check_Skin.h"
#include "product/tarn_SkinFiles.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace
{
const std::string& DataDir()
{
    static const std::string folder = []
    {
        char name[] = "/tmp/fuzz_CheckSkin.XXXXXX";
        return std::string(mkdtemp(name) ? name : "/tmp") + "/skin";
    }();
    return folder;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return 0;
    std::string path = CheckFileName(DataDir(), kTarnSkinFiles[data[0] % SkinFileCount].name);
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return 0;
    fwrite(data + 1, 1, size - 1, file);
    fclose(file);
    CheckReport report;
    CheckSkin(DataDir(), "Install", report);
    if (report.Lines().empty()) __builtin_trap(); // twelve of the thirteen files are missing
    remove(path.c_str());
    return 0;
}
