// The system utilities against the real registry and files.
#include "FrameWork/_cult/Source/clt_System.h"
#include "support/product_Folder.h"

#include <gtest/gtest.h>
#include <sddl.h>

#include <string>

static const char kKey[] = "Software\\LauncherTests\\System";

TEST(CltSystem, RegistryReadsFitTheirBuffersAndLeaveTheOutputOnFailure)
{
    DeleteRegTree(kKey);
    ASSERT_TRUE(SetReg(kKey, "Short", "abc"));
    ASSERT_TRUE(SetReg(kKey, "Long", std::string(1024, 'x'))); // 1025 bytes with the zero
    ASSERT_TRUE(SetReg(kKey, "Fits", std::string(1023, 'y'))); // exactly 1024 bytes
    ASSERT_TRUE(SetReg(kKey, "Number", DWORD(0x12345678)));

    CltString text("unchanged");
    EXPECT_FALSE(
        clt_RegGetString(HKEY_LOCAL_MACHINE, "Software\\LauncherTests\\Missing", "Short", text));
    EXPECT_FALSE(clt_RegGetString(HKEY_LOCAL_MACHINE, kKey, "Absent", text));
    EXPECT_FALSE(clt_RegGetString(HKEY_LOCAL_MACHINE, kKey, "Long", text));
    EXPECT_STREQ(text.c_str(), "unchanged");
    EXPECT_TRUE(clt_RegGetString(HKEY_LOCAL_MACHINE, kKey, "Fits", text));
    EXPECT_EQ(text.length(), 1023u);
    EXPECT_TRUE(clt_RegGetString(HKEY_LOCAL_MACHINE, kKey, "Short", text));
    EXPECT_STREQ(text.c_str(), "abc");

    uint32_t number = 7;
    EXPECT_TRUE(clt_RegGetDword(HKEY_LOCAL_MACHINE, kKey, "Number", number));
    EXPECT_EQ(number, 0x12345678u);
    number = 7;
    EXPECT_FALSE(clt_RegGetDword(HKEY_LOCAL_MACHINE, kKey, "Fits", number)); // does not fit
    EXPECT_EQ(number, 7u);
    // The type is not checked: "abc" and its zero are four bytes.
    EXPECT_TRUE(clt_RegGetDword(HKEY_LOCAL_MACHINE, kKey, "Short", number));
    EXPECT_EQ(number, 0x00636261u);
    DeleteRegTree(kKey);
}

// A user who is not an administrator may only read HKLM\Software: the values must still
// read as present.
TEST(CltSystem, RegistryValuesOfAKeyThatGrantsOnlyReadingAreRead)
{
    const char key[] = "Software\\LauncherTests\\ReadOnly";
    DeleteRegTree(key);
    ASSERT_TRUE(SetReg(key, "Installed", DWORD(1)));
    ASSERT_TRUE(SetReg(key, "Install Path", "C:\\Games\\Tarn"));
    auto setAccess = [&](const char* sddl)
    {
        HKEY k;
        ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, WRITE_DAC, &k), ERROR_SUCCESS);
        PSECURITY_DESCRIPTOR sd = nullptr;
        ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(sddl, SDDL_REVISION_1, &sd,
                                                                         nullptr));
        EXPECT_EQ(RegSetKeySecurity(k, DACL_SECURITY_INFORMATION, sd), ERROR_SUCCESS);
        LocalFree(sd);
        RegCloseKey(k);
    };
    setAccess("D:P(A;;KR;;;WD)"); // everyone may read, nobody may write
    HKEY probe;
    ASSERT_NE(RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, KEY_ALL_ACCESS, &probe), ERROR_SUCCESS);

    uint32_t installed = 0;
    CltString path;
    EXPECT_TRUE(clt_RegGetDword(HKEY_LOCAL_MACHINE, key, "Installed", installed));
    EXPECT_EQ(installed, 1u);
    EXPECT_TRUE(clt_RegGetString(HKEY_LOCAL_MACHINE, key, "Install Path", path));
    EXPECT_STREQ(path.c_str(), "C:\\Games\\Tarn");
    setAccess("D:P(A;;KA;;;WD)");
    DeleteRegTree(key);
}

TEST(CltSystem, FilesFoldersAndTheCurrentFolder)
{
    std::string root = Join(TestRoot(), "system");
    RemoveTree(root);
    WriteTextFile(Join(root, "present.txt"), "x");
    char before[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, before);

    EXPECT_TRUE(clt_IsFilePresent(Join(root, "present.txt").c_str()));
    EXPECT_FALSE(clt_IsFilePresent(Join(root, "absent.txt").c_str()));
    EXPECT_FALSE(clt_IsFilePresent(root.c_str())); // a folder is no file
    HANDLE locked = CreateFileA(Join(root, "present.txt").c_str(), GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(locked, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(clt_IsFilePresent(Join(root, "present.txt").c_str()));
    CloseHandle(locked);

    EXPECT_TRUE(clt_IsDirectoryPresent(root.c_str()));
    EXPECT_FALSE(clt_IsDirectoryPresent(Join(root, "absent").c_str()));
    EXPECT_FALSE(clt_IsDirectoryPresent(Join(root, "present.txt").c_str()));
    char after[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, after);
    EXPECT_STREQ(after, before);
}
