// PreInitializeLauncher in this process against real files, registry values and the
// demo setup library: what it takes from setup.ini and the registry.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"
#include "lfx_Fixture.h"
#include "support/product_Folder.h"

#include <gtest/gtest.h>

TEST(LfxConfiguration, SettingsFromSetupIniAndRegistry)
{
    struct Case
    {
        const char* name;
        std::vector<std::pair<std::string, std::string>>
            startup; // [Startup] key, value ("-": remove)
        bool withCompany;
        int installed; // -1: no registry value
        int result;
        int32_t disks;
        int32_t retail;
        int32_t installDX;
        const char* registryFolder;
    } cases[] = {
        {"defaults", {}, true, -1, 1, 1, 1, 1, "Software\\Launcher Tests\\Config\\1.0"},
        {"disks missing", {{"Disks", "-"}}, true, -1, 1, 0, 1, 1, nullptr},
        {"disks 123456 reads as missing", {{"Disks", "123456"}}, true, -1, 1, 0, 1, 1, nullptr},
        {"disks 0", {{"Disks", "0"}}, true, -1, 1, 0, 1, 1, nullptr},
        {"disks 3", {{"Disks", "3"}}, true, -1, 1, 3, 1, 1, nullptr},
        {"retail in lower case", {{"AppType", "retail"}}, true, -1, 1, 1, 1, 1, nullptr},
        {"RETAIL2 is not retail", {{"AppType", "RETAIL2"}}, true, -1, 1, 1, 0, 1, nullptr},
        {"no AppType", {{"AppType", "-"}}, true, -1, 1, 1, 0, 1, nullptr},
        {"InstallDX 0", {{"InstallDX", "0"}}, true, -1, 1, 1, 1, 0, nullptr},
        {"InstallDX missing", {{"InstallDX", "-"}}, true, -1, 1, 1, 1, 0, nullptr},
        {"installed 2", {}, true, 2, 1, 1, 1, 1, nullptr},
        {"installed 1 ends start-up", {}, true, 1, 0, 0, 0, 0, nullptr},
        {"company missing", {}, false, -1, 1, 1, 1, 1, "Software\\Config\\1.0"},
    };
    std::string root = Join(TestRoot(), "config");
    g_Env.Set("DEBUG", root.c_str(), false); // the launcher folder is the test's folder
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        std::vector<IniValue> values;
        for (const auto& [key, value] : c.startup)
            values.push_back({"Startup", key.c_str(), value == "-" ? nullptr : value.c_str()});
        if (!c.withCompany) values.push_back({"Registry", "Company", nullptr});
        RemoveTree(root);
        MakeProduct(root, "Config", values);
        std::string key = ProductKey("Config");
        DeleteRegTree(key);
        if (c.installed >= 0) SetReg(key, "Installed", DWORD(c.installed));

        g_LfxMain.m_nDisks = g_LfxMain.m_bRetail = g_LfxMain.m_bInstallDX = 0;
        g_LfxMain.m_dwInstalled = 0;
        EXPECT_EQ(g_LfxMain.PreInitializeLauncher(), c.result);
        EXPECT_EQ(g_LfxMain.m_nDisks, c.disks);
        EXPECT_EQ(g_LfxMain.m_bRetail, c.retail);
        EXPECT_EQ(g_LfxMain.m_bInstallDX, c.installDX);
        EXPECT_EQ(g_LfxMain.m_dwInstalled, c.installed < 0 ? 0u : uint32_t(c.installed));
        EXPECT_EQ(g_LfxMain.m_dwOptions, 0x0Au);
        EXPECT_STREQ(g_Env["LauncherDir"].c_str(), root.c_str());
        if (c.registryFolder)
        {
            EXPECT_STREQ(g_Env["RegistryFolder"].c_str(), c.registryFolder);
        }
        if (c.result)
        {
            EXPECT_STREQ(g_Env["ProductName"].c_str(), "Tarn");
            EXPECT_STREQ(g_Env["MediaName"].c_str(), "Tarn");
            EXPECT_STREQ(g_Env["Language"].c_str(), "INT");
            EXPECT_STREQ(g_Env["DataDir"].c_str(), (root + "\\Install").c_str());
        }
        ReleaseSetup();
        DeleteRegTree(key);
    }
}

TEST(LfxConfiguration, ReadersOfSetupIniAndTheSetupObject)
{
    std::string root = Join(TestRoot(), "readers");
    RemoveTree(root);
    std::string longValue(300, 'L');
    MakeProduct(
        root, "Readers",
        {{"Extra", "Long", longValue.c_str()}, {"Extra", "Empty", ""}, {"Extra", "Number", "-42"}});
    g_Env.Set("DEBUG", root.c_str(), false);
    ASSERT_EQ(g_LfxMain.PreInitializeLauncher(), 1);

    CltString value("kept");
    EXPECT_EQ(g_LfxMain.GetIniString("Extra", "Empty", value), 0);
    EXPECT_EQ(g_LfxMain.GetIniString("Extra", "Missing", value), 0);
    EXPECT_STREQ(value.c_str(), "kept");
    EXPECT_EQ(g_LfxMain.GetIniString("Extra", "Long", value), 1);
    EXPECT_EQ(value.length(), 259u);
    int32_t number = 5;
    EXPECT_EQ(g_LfxMain.GetIniDWORD("Extra", "Missing", number), 0);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(g_LfxMain.GetIniDWORD("Extra", "Number", number), 1);
    EXPECT_EQ(number, -42);

    // Setup texts come with their $[Name] references expanded.
    EXPECT_STREQ(g_LfxMain.GetSetupString(0xFF05).c_str(), "Welcome to Tarn");
    EXPECT_STREQ(g_LfxMain.GetSetupString(0x1234).c_str(), "");
    ReleaseSetup();
    EXPECT_STREQ(g_LfxMain.GetSetupString(0xFF05).c_str(), ""); // no setup object
}
