// The demo setup library, loaded as the launcher loads it, on this machine: its DirectX
// report and installation and its display description; the shipped library ignores the
// settings that the test build takes from setup.ini.
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"
#include "support/product_Folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

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
