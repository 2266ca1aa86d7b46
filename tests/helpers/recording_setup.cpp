// A setup library that records, in calls.log beside itself, every call of its DirectX
// entries: "Startup DATADIR", "CheckDirectX", "Shutdown", one line each. Its check reports
// DirectX as ready.
#include <windows.h>

#include <cstdio>
#include <cstring>

namespace
{
HMODULE g_module = nullptr;

void Record(const char* line)
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(g_module, path, MAX_PATH);
    char* slash = strrchr(path, '\\');
    if (!slash) return;
    strcpy(slash + 1, "calls.log");
    if (FILE* f = fopen(path, "ab"))
    {
        fprintf(f, "%s\n", line);
        fclose(f);
    }
}
} // namespace

extern "C" __declspec(dllexport) void __cdecl VokSetup_Startup(const char* dataDir)
{
    char line[MAX_PATH + 16];
    snprintf(line, sizeof line, "Startup %s", dataDir ? dataDir : "(null)");
    Record(line);
}

extern "C" __declspec(dllexport) int __cdecl VokSetup_CheckDirectX()
{
    Record("CheckDirectX");
    return 1;
}

extern "C" __declspec(dllexport) void __cdecl VokSetup_Shutdown()
{
    Record("Shutdown");
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) g_module = instance;
    return TRUE;
}
