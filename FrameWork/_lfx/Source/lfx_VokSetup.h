// The setup library's interface: the exports that the launcher finds by name in
// VokSetup.dll and the two objects it hands out. The objects are called through their
// virtual slots in the order declared here, so a publisher's library built with another
// compiler stays compatible: the interfaces have no virtual destructors (which some
// compilers lay out as two slots) and unused slots are kept as placeholders.
#pragma once

#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define VOK_CALL __cdecl
#else
#define VOK_CALL
#endif

// The display description that IVokHardware::DescribeDisplays fills. A plain record of
// fixed size, so that a library built with any compiler can fill it: up to 16 devices,
// names of up to 127 characters. Where a list is empty the default entry stands for
// each device.
constexpr uint32_t VOK_MAX_DISPLAYS = 16;
constexpr uint32_t VOK_NAME_LENGTH = 128;
struct VokDisplayDescription
{
    uint32_t nNames;                                  // entries of aszNames filled
    char aszNames[VOK_MAX_DISPLAYS][VOK_NAME_LENGTH]; // device names
    uint32_t nGuids;                                  // entries of aGuids filled
    uint8_t aGuids[VOK_MAX_DISPLAYS][16];             // device GUIDs
    char szDefaultName[VOK_NAME_LENGTH];              // used when no name is listed
    uint8_t defaultGuid[16];                          // used when no GUID is listed
    uint32_t nDisplays;                               // count of display devices
    uint32_t dwReserved;                              // cleared by the launcher, not read
};

class CVokSetup
{
  public:
    virtual void Reserved0() {}                         // slot 0, never called
    virtual const char* GetString(uint16_t number) = 0; // slot 1: text owned by the object
    virtual int GetDirectXState() = 0;                  // slot 2: 1 ready, 4 stop silently
    virtual int InstallDirectX(const char* folder) = 0; // slot 3: 0 done, else restart
    virtual void Release() = 0;                         // slot 4: destroys the object

  protected:
    ~CVokSetup() = default;
};

class IVokHardware
{
  public:
    virtual void Reserved0() {}
    virtual void Reserved1() {}
    // Slot 2: fills the device names, GUIDs and count of the description.
    virtual void DescribeDisplays(void* hOwner, void* hInstance, VokDisplayDescription* pDesc) = 0;
    virtual void Reserved3() {}
    virtual void Release() = 0; // slot 4

  protected:
    ~IVokHardware() = default;
};

// DirectX states reported by GetDirectXState.
constexpr int VOK_DIRECTX_READY = 1;
constexpr int VOK_DIRECTX_STOP = 4;

extern "C"
{
    // Non-zero and *ppSetup set on success.
    typedef int(VOK_CALL* PFN_VokSetup_GetSetup)(const char* dataDir, CVokSetup** ppSetup);
    typedef int(VOK_CALL* PFN_VokSetup_HardwareSetup)(IVokHardware** ppHardware);
    typedef void(VOK_CALL* PFN_VokSetup_Startup)(const char* dataDir);
    typedef int(VOK_CALL* PFN_VokSetup_CheckDirectX)();
    typedef void(VOK_CALL* PFN_VokSetup_Shutdown)();
}
