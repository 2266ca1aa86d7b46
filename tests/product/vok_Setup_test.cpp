// The demo setup library, loaded as the launcher loads it: its texts, its DirectX report
// and installation, its display description, and the settings that tests use to steer it.
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"
#include "harness/wine_Harness.h"
#include "support/demo_Product.h"

#include "FrameWork/_lfx/Source/lfx_Texts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace harness;

namespace
{
// A data folder with the library and a setup.ini holding the given [VokSetupTest] lines.
class SetupLibrary
{
  public:
    // The test build of the library beside the test programs, unless another is named.
    explicit SetupLibrary(const std::string& testSettings,
                          const std::string& library = Join(ExeFolder(), "VokSetup.dll"))
    {
        m_folder = Join(TestRoot(), "voksetup");
        FreeLibrary(GetModuleHandleA(Join(m_folder, "VokSetup.dll").c_str()));
        RemoveTree(m_folder);
        CopyInto(library, m_folder);
        WriteTextFile(Join(m_folder, "setup.ini"), "[VokSetupTest]\r\n" + testSettings);
        m_dll = LoadLibraryA(Join(m_folder, "VokSetup.dll").c_str());
        auto getSetup = clt_GetEntry<PFN_VokSetup_GetSetup>(m_dll, "VokSetup_GetSetup");
        if (getSetup) getSetup(m_folder.c_str(), &m_setup);
    }
    ~SetupLibrary()
    {
        if (m_setup) m_setup->Release();
        if (m_dll) FreeLibrary(m_dll);
    }
    VokDisplayDescription Describe()
    {
        VokDisplayDescription desc;
        memset(&desc, 0, sizeof desc);
        IVokHardware* hardware = nullptr;
        auto setupHardware =
            clt_GetEntry<PFN_VokSetup_HardwareSetup>(m_dll, "VokSetup_HardwareSetup");
        if (setupHardware && setupHardware(&hardware) && hardware)
        {
            hardware->DescribeDisplays(nullptr, GetModuleHandleA(nullptr), &desc);
            hardware->Release();
        }
        return desc;
    }
    int CheckDirectX()
    {
        auto startup = clt_GetEntry<PFN_VokSetup_Startup>(m_dll, "VokSetup_Startup");
        auto check = clt_GetEntry<PFN_VokSetup_CheckDirectX>(m_dll, "VokSetup_CheckDirectX");
        auto shutdown = clt_GetEntry<PFN_VokSetup_Shutdown>(m_dll, "VokSetup_Shutdown");
        if (!startup || !check || !shutdown) return -1;
        startup(m_folder.c_str());
        int result = check();
        shutdown();
        return result;
    }
    std::string m_folder;
    HMODULE m_dll = nullptr;
    CVokSetup* m_setup = nullptr;
};
} // namespace

TEST(VokSetup, EveryTextTheLauncherUsesIsThere)
{
    SetupLibrary lib("");
    ASSERT_NE(lib.m_setup, nullptr);
#define LFX_TEXT_ITEM(name, number) number,
    const uint16_t numbers[] = {LFX_TEXTS(LFX_TEXT_ITEM)};
#undef LFX_TEXT_ITEM
    for (uint16_t n : numbers)
        EXPECT_STRNE(lib.m_setup->GetString(n), "") << std::hex << n;
    EXPECT_STREQ(lib.m_setup->GetString(0xFF00), "Tarn");
    EXPECT_STREQ(lib.m_setup->GetString(0xFF04), "DEFAULT_CHARSET");
    EXPECT_STREQ(lib.m_setup->GetString(0xFFF0), "INT");
    EXPECT_STREQ(lib.m_setup->GetString(0x5007),
                 "The program could not be started.\n\nPlease reinstall $[ProductName].");
    EXPECT_STREQ(lib.m_setup->GetString(0x0001), "");
    EXPECT_STREQ(lib.m_setup->GetString(0xFFFF), "");
}

TEST(VokSetup, TestSettingsSteerTheDirectXReport)
{
    struct Case
    {
        std::string settings;
        int state, install, check, displays;
    } cases[] = {
        {"DirectXState=4\r\nDirectXInstall=1\r\nCheckDirectX=0\r\nDisplays=0\r\n", 4, 1, 0, 0},
        {"DirectXState=2\r\nDirectXInstall=0\r\nCheckDirectX=1\r\nDisplays=2\r\n", 2, 0, 1, 2},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.settings);
        SetupLibrary lib(c.settings);
        ASSERT_NE(lib.m_setup, nullptr);
        EXPECT_EQ(lib.m_setup->GetDirectXState(), c.state);
        EXPECT_EQ(lib.m_setup->InstallDirectX("C:\\nowhere"), c.install);
        EXPECT_EQ(lib.CheckDirectX(), c.check);
        VokDisplayDescription desc = lib.Describe();
        EXPECT_EQ(desc.nDisplays, uint32_t(c.displays));
        if (c.displays == 2)
        {
            EXPECT_STREQ(desc.aszNames[1], "Test Display 2");
            EXPECT_EQ(desc.nNames, 2u);
        }
    }
}

TEST(VokSetup, TheShippedLibraryHasNoTestSettings)
{
    SetupLibrary lib("DirectXState=4\r\nCheckDirectX=7\r\nDisplays=0\r\n",
                     Join(ExeFolder(), "..\\demo-product\\Install\\VokSetup.dll"));
    ASSERT_NE(lib.m_setup, nullptr);
    int state = lib.m_setup->GetDirectXState();
    EXPECT_TRUE(state == 1 || state == 2) << state; // what the system has, not 4
    EXPECT_EQ(lib.CheckDirectX(), state == 1 ? 1 : 0);
    EXPECT_GE(lib.Describe().nDisplays, 1u);
}

TEST(VokSetup, InstallDirectXRunsTheSetupProgramAndWaits)
{
    SetupLibrary lib("");
    std::string directX = Join(lib.m_folder, "DirectX");
    CopyInto(Join(ExeFolder(), "test_helper.exe"), directX, "DXSETUP.exe");
    // The helper has written its record by the time the call returns; its exit code 0
    // means installed without a restart.
    EXPECT_EQ(lib.m_setup->InstallDirectX(directX.c_str()), 0);
    EXPECT_EQ(ReadTextFile(Join(directX, "DXSETUP.exe.log")), "args=/silent|cwd=" + directX + "\n");
}

TEST(VokSetup, RealDisplaysAndDirectXAgreeWithEachOther)
{
    SetupLibrary lib("");
    VokDisplayDescription desc = lib.Describe();
    int state = lib.m_setup->GetDirectXState();
    EXPECT_TRUE(state == 1 || state == 2) << state;
    // DirectDraw lists the primary display first, without a GUID: it names the default.
    ASSERT_GE(desc.nDisplays, 1u);
    EXPECT_STRNE(desc.szDefaultName, "");
    EXPECT_STREQ(desc.aszNames[0], desc.szDefaultName);
    EXPECT_EQ(desc.nNames, desc.nDisplays);
    EXPECT_EQ(desc.nGuids, desc.nDisplays);
    EXPECT_EQ(lib.CheckDirectX(), state == 1 ? 1 : 0);
}
