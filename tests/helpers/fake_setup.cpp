// Setup-library doubles: built as NoExport.dll (no VokSetup_GetSetup at all) and as
// RefusingSetup.dll (VokSetup_GetSetup exists and refuses to make the setup object).
#include <windows.h>

#ifdef FAKE_SETUP_REFUSES
extern "C" __declspec(dllexport) int VokSetup_GetSetup(const char*, void**)
{
    return 0;
}
#else
extern "C" __declspec(dllexport) int SomethingElse()
{
    return 1;
}
#endif

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)
{
    return TRUE;
}
