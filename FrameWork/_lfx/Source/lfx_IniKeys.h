// The keys of setup.ini that the launcher reads: one table for the launcher's configuration
// code and the product checker. Every other key is never read. A required key's absence or
// empty value ends start-up in the failed assertion named here.
#pragma once

enum class LfxIniKind
{
    Text,
    Number,
    Required
};

struct LfxIniKey
{
    const char* section;
    const char* key;
    LfxIniKind kind;
    const char* assertion; // Required: the assertion that fails without it
};

// X(name, section, key, kind, assertion)
#define LFX_INI_KEYS(X)                                                                    \
    X(RegistryCompany, "Registry", "Company", Text, nullptr)                               \
    X(RegistryProduct, "Registry", "Product", Text, nullptr)                               \
    X(RegistryVersion, "Registry", "Version", Text, nullptr)                               \
    X(StartupInstallDX, "Startup", "InstallDX", Number, nullptr)                           \
    X(StartupAppType, "Startup", "AppType", Text, nullptr)                                 \
    X(StartupDirectXVer, "Startup", "DirectXVer", Required, "!strSecond.empty()")          \
    X(StartupDisks, "Startup", "Disks", Number, nullptr)                                   \
    X(StartupData, "Startup", "Data", Text, nullptr)                                       \
    X(FilesLauncher, "Files", "Launcher", Required, "!strSecond.empty()")                  \
    X(FilesSetupDll, "Files", "SetupDll", Required, "m_hSetupDll!=0")                      \
    X(FilesProduct, "Files", "Product", Text, nullptr)                                     \
    X(FilesInstaller, "Files", "Installer", Text, nullptr)                                 \
    X(FilesCmdLine, "Files", "CmdLine", Text, nullptr)                                     \
    X(FoldersProduct, "Folders", "Product", Text, nullptr)                                 \
    X(FoldersDirectXCurrent, "Folders", "DirectXCurrent", Text, nullptr)                   \
    X(FoldersDirectX, "Folders", "DirectX", Text, nullptr)                                 \
    X(UrlDirectX, "Url", "DirectX", Text, nullptr)                                         \
    X(MutexLauncher, "Mutex", "Launcher", Required, "!strLauncherMutex.empty()")           \
    X(MutexProduct, "Mutex", "Product", Required, "!strGameMutex.empty()")                 \
    X(DocumentationHelp, "Documentation", "Help", Text, nullptr)                           \
    X(SysCheckRAM, "SysCheck", "RAM", Number, nullptr)                                     \
    X(BufferProduct, "Buffer", "Product", Number, nullptr)

namespace lfx_ini
{
#define LFX_INI_KEY(name, section, key, kind, assertion)                                   \
    inline constexpr LfxIniKey name = {section, key, LfxIniKind::kind, assertion};
LFX_INI_KEYS(LFX_INI_KEY)
#undef LFX_INI_KEY
#define LFX_INI_KEY(name, section, key, kind, assertion) name,
inline constexpr LfxIniKey kAll[] = {LFX_INI_KEYS(LFX_INI_KEY)};
#undef LFX_INI_KEY
} // namespace lfx_ini
