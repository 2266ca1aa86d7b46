// VokSetup.dll: the demo product's setup library, and the model for publishers who make
// their own. It supplies the launcher's texts (compiled from VokSetup.strings), reports
// and installs DirectX, and describes the display devices that DirectDraw enumerates.
//
// DirectDraw is loaded only from the system folder. In the test build (VOK_TEST_SETTINGS),
// setup.ini beside this library may hold a section [VokSetupTest] whose keys replace what
// the library reports; the library that ships has no such section:
//   DirectXState=N      the result of GetDirectXState
//   DirectXInstall=N    the result of InstallDirectX (no program is run)
//   CheckDirectX=N      the result of VokSetup_CheckDirectX
//   Text_XXXX=TEXT      the text of number 0xXXXX (four hex digits, upper case)
//   Displays=N          describe N display devices named "Test Display 1".. (0: none),
//                       identifier byte k of device i being 0x10 * i + k
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <windows.h>

#include <d3d.h>
#include <ddraw.h>

#include <cstdio>
#include <cstring>
#include <string>

#define VOK_EXPORT extern "C" __declspec(dllexport)

namespace
{
struct StringEntry
{
    uint16_t number;
    const char* text;
};
const StringEntry kStrings[] = {
#include "vok_Strings.inc"
};

HMODULE g_hModule = nullptr;

#ifdef VOK_TEST_SETTINGS
// setup.ini beside this library; "" when the library's path has no folder.
std::string TestSettingsFile()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(g_hModule, path, MAX_PATH);
    char* slash = strrchr(path, '\\');
    if (!slash) return std::string();
    strcpy(slash + 1, "setup.ini");
    return path;
}

// The value of [VokSetupTest] key in setup.ini beside this library, or 'fallback'.
int TestSetting(const char* key, int fallback)
{
    std::string file = TestSettingsFile();
    if (file.empty()) return fallback;
    return static_cast<int>(GetPrivateProfileIntA("VokSetupTest", key, fallback, file.c_str()));
}

// The text that [VokSetupTest] Text_XXXX sets for a number, kept in 'text'; false when the
// key is not there.
bool TestText(uint16_t number, std::string& text)
{
    std::string file = TestSettingsFile();
    if (file.empty()) return false;
    char key[16], value[1200];
    snprintf(key, sizeof key, "Text_%04X", number);
    const char absent[] = "\x01";
    GetPrivateProfileStringA("VokSetupTest", key, absent, value, sizeof value, file.c_str());
    if (!strcmp(value, absent)) return false;
    text = value;
    return true;
}
#else
int TestSetting(const char*, int fallback)
{
    return fallback;
}
bool TestText(uint16_t, std::string&)
{
    return false;
}
#endif

constexpr int kNoSetting = -12345;

// 1 when DirectDraw creates a device and offers Direct3D on it, 2 when it does not.
int ProbeDirectX()
{
    HMODULE ddraw = clt_LoadSystemLibrary("ddraw.dll");
    if (!ddraw) return 2;
    using CreateFn = HRESULT(WINAPI*)(GUID*, IDirectDraw**, IUnknown*);
    auto create = clt_GetEntry<CreateFn>(ddraw, "DirectDrawCreate");
    int state = 2;
    IDirectDraw* dd = nullptr;
    if (create && SUCCEEDED(create(nullptr, &dd, nullptr)) && dd)
    {
        IUnknown* d3d = nullptr;
        if (SUCCEEDED(dd->QueryInterface(IID_IDirect3D7, reinterpret_cast<void**>(&d3d))) && d3d)
        {
            d3d->Release();
            state = VOK_DIRECTX_READY;
        }
        dd->Release();
    }
    FreeLibrary(ddraw);
    return state;
}

class DemoSetup final : public CVokSetup
{
  public:
    const char* GetString(uint16_t number) override
    {
        if (TestText(number, m_testText)) return m_testText.c_str();
        size_t lo = 0, hi = sizeof kStrings / sizeof kStrings[0];
        while (lo < hi)
        {
            size_t mid = (lo + hi) / 2;
            if (kStrings[mid].number == number) return kStrings[mid].text;
            if (kStrings[mid].number < number)
                lo = mid + 1;
            else
                hi = mid;
        }
        return "";
    }

    int GetDirectXState() override
    {
        int forced = TestSetting("DirectXState", kNoSetting);
        return forced != kNoSetting ? forced : ProbeDirectX();
    }

    // Runs DXSETUP.exe from the folder and waits for it; its exit code is the result
    // (0: installed, anything else: Windows must restart).
    int InstallDirectX(const char* folder) override
    {
        int forced = TestSetting("DirectXInstall", kNoSetting);
        if (forced != kNoSetting) return forced;
        std::string program = std::string(folder) + "\\DXSETUP.exe";
        SHELLEXECUTEINFOA info = {};
        info.cbSize = sizeof info;
        info.fMask = SEE_MASK_NOCLOSEPROCESS;
        info.lpVerb = "open";
        info.lpFile = program.c_str();
        info.lpParameters = "/silent";
        info.lpDirectory = folder;
        info.nShow = SW_SHOWNORMAL;
        // The shell library is loaded here, not imported: the launcher loads this library
        // before its window opens, and an import would make the window wait for it.
        using Fn = BOOL(WINAPI*)(SHELLEXECUTEINFOA*);
        Fn execute = clt_GetEntry<Fn>(clt_LoadSystemLibrary("shell32.dll"), "ShellExecuteExA");
        if (!execute || !execute(&info) || !info.hProcess) return 0;
        WaitForSingleObject(info.hProcess, INFINITE);
        DWORD code = 0;
        GetExitCodeProcess(info.hProcess, &code);
        CloseHandle(info.hProcess);
        return static_cast<int>(code);
    }

    void Release() override { delete this; }

  private:
    std::string m_testText; // the latest text set by the test settings
};

void AddDisplay(VokDisplayDescription* desc, const GUID* guid, const char* name)
{
    if (desc->nDisplays >= VOK_MAX_DISPLAYS) return;
    uint32_t i = desc->nDisplays++;
    snprintf(desc->aszNames[i], VOK_NAME_LENGTH, "%s", name ? name : "");
    memset(desc->aGuids[i], 0, 16);
    if (guid) memcpy(desc->aGuids[i], guid, 16);
    desc->nNames = desc->nGuids = desc->nDisplays;
}

BOOL WINAPI OnDisplay(GUID* guid, LPSTR description, LPSTR, LPVOID context)
{
    auto* desc = static_cast<VokDisplayDescription*>(context);
    if (!guid) snprintf(desc->szDefaultName, VOK_NAME_LENGTH, "%s", description ? description : "");
    AddDisplay(desc, guid, description);
    return TRUE;
}

class DemoHardware final : public IVokHardware
{
  public:
    void DescribeDisplays(void*, void*, VokDisplayDescription* desc) override
    {
        if (!desc) return;
        int forced = TestSetting("Displays", kNoSetting);
        if (forced != kNoSetting)
        {
            for (int i = 0; i < forced; ++i)
            {
                char name[32];
                snprintf(name, sizeof name, "Test Display %d", i + 1);
                // Identifier bytes that differ in every position: 0x10 * (i + 1) + k.
                GUID guid;
                uint8_t* bytes = reinterpret_cast<uint8_t*>(&guid);
                for (int k = 0; k < 16; ++k)
                    bytes[k] = uint8_t(0x10 * (i + 1) + k);
                AddDisplay(desc, &guid, name);
            }
            return;
        }
        HMODULE ddraw = clt_LoadSystemLibrary("ddraw.dll");
        if (!ddraw) return;
        using EnumerateFn = HRESULT(WINAPI*)(LPDDENUMCALLBACKA, LPVOID);
        auto enumerate = clt_GetEntry<EnumerateFn>(ddraw, "DirectDrawEnumerateA");
        if (enumerate) enumerate(OnDisplay, desc);
        FreeLibrary(ddraw);
    }

    void Release() override { delete this; }
};
} // namespace

VOK_EXPORT int VOK_CALL VokSetup_GetSetup(const char* dataDir, CVokSetup** ppSetup)
{
    if (!dataDir || !ppSetup) return 0;
    *ppSetup = new DemoSetup;
    return 1;
}

VOK_EXPORT int VOK_CALL VokSetup_HardwareSetup(IVokHardware** ppHardware)
{
    if (!ppHardware) return 0;
    *ppHardware = new DemoHardware;
    return 1;
}

VOK_EXPORT void VOK_CALL VokSetup_Startup(const char*) {}

VOK_EXPORT int VOK_CALL VokSetup_CheckDirectX()
{
    int forced = TestSetting("CheckDirectX", kNoSetting);
    if (forced != kNoSetting) return forced;
    return ProbeDirectX() == VOK_DIRECTX_READY ? 1 : 0;
}

VOK_EXPORT void VOK_CALL VokSetup_Shutdown() {}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) g_hModule = instance;
    return TRUE;
}
