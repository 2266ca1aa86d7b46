// The display-device list and CDisplayProbe (see lfx_DisplayProbe.h).
#include "FrameWork/_lfx/Source/lfx_DisplayProbe.h"

#include "FrameWork/_lfx/Source/lfx_System.h"

#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"

#include <cstdlib>
#include <cstring>
#include <windows.h>

CLT_STATIC(CLT_INIT_DISPLAY_LIST) LfxDisplayDeviceList g_DisplayDevices;

void LfxDisplayDeviceList::Append(const uint8_t guid[16], const char* name)
{
    DisplayDeviceRecord record;
    memcpy(record.guid, guid, 16);
    size_t n = strlen(name) + 1;
    record.name = static_cast<char*>(malloc(n));
    if (!record.name) abort();
    memcpy(record.name, name, n);
    m_records.push_back(record);
}

void LfxDisplayDeviceList::Clear()
{
    for (DisplayDeviceRecord& record : m_records)
        free(record.name);
    m_records.clear();
}

CDisplayProbe::CDisplayProbe(const char* setupLibraryPath)
{
    memset(&m_description, 0, sizeof m_description);
    HMODULE library = clt_LoadLibraryByPath(setupLibraryPath);
    if (library)
    {
        auto setupHardware =
            clt_GetEntry<PFN_VokSetup_HardwareSetup>(library, "VokSetup_HardwareSetup");
        if (setupHardware)
        {
            setupHardware(&m_pHardware);
            m_description.nNames = m_description.nGuids = 0;
            m_description.nDisplays = 0;
            m_description.dwReserved = 0;
            if (m_pHardware)
            {
                m_pHardware->DescribeDisplays(nullptr, clt_GetState()->m_hInstance, &m_description);
                m_pHardware->Release();
            }
            m_pHardware = nullptr;
        }
        FreeLibrary(library);
    }
    HMODULE ddraw = clt_LoadSystemLibrary("ddraw.dll");
    if (!ddraw) return;
    uint32_t count =
        m_description.nDisplays < VOK_MAX_DISPLAYS ? m_description.nDisplays : VOK_MAX_DISPLAYS;
    for (uint32_t i = 0; i < count; ++i)
    {
        const char* name = m_description.nNames
                               ? m_description.aszNames[i < m_description.nNames ? i : 0]
                               : m_description.szDefaultName;
        const uint8_t* guid = m_description.nGuids
                                  ? m_description.aGuids[i < m_description.nGuids ? i : 0]
                                  : m_description.defaultGuid;
        char bounded[VOK_NAME_LENGTH];
        memcpy(bounded, name, VOK_NAME_LENGTH);
        bounded[VOK_NAME_LENGTH - 1] = 0; // a library may leave a name unterminated
        g_DisplayDevices.Append(guid, bounded);
    }
    FreeLibrary(ddraw);
}

CDisplayProbe::~CDisplayProbe()
{
    g_DisplayDevices.Clear();
}
