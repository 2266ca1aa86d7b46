// The display-device list and CDisplayProbe, which fills it.
//
// The list is one process-wide list of DisplayDeviceRecords (a GUID and an owned copy of
// the device's name). It has entries only while a CDisplayProbe exists: the probe asks
// the setup library to describe the displays, and, when DirectDraw is present on the
// system, puts one record per described device into the list; destroying the probe
// empties the list again.
#pragma once

#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <cstdint>
#include <vector>

struct DisplayDeviceRecord
{
    uint8_t guid[16];
    char* name; // owned
};

class LfxDisplayDeviceList
{
  public:
    LfxDisplayDeviceList() = default;
    ~LfxDisplayDeviceList() { Clear(); }
    LfxDisplayDeviceList(const LfxDisplayDeviceList&) = delete;
    LfxDisplayDeviceList& operator=(const LfxDisplayDeviceList&) = delete;

    void Append(const uint8_t guid[16], const char* name);
    void Clear();
    bool IsEmpty() const { return m_records.empty(); }
    const std::vector<DisplayDeviceRecord>& Records() const { return m_records; }

  private:
    std::vector<DisplayDeviceRecord> m_records;
};

extern LfxDisplayDeviceList g_DisplayDevices;

class CDisplayProbe
{
  public:
    explicit CDisplayProbe(const char* setupLibraryPath);
    ~CDisplayProbe();
    CDisplayProbe(const CDisplayProbe&) = delete;
    CDisplayProbe& operator=(const CDisplayProbe&) = delete;

    const VokDisplayDescription& Description() const { return m_description; }

  private:
    VokDisplayDescription m_description;
    IVokHardware* m_pHardware = nullptr;
};
