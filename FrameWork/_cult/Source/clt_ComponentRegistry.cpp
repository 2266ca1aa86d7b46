// The component registry, the framework's component ids, and the file-stream and
// memory-block components.
#include "FrameWork/_cult/Source/clt_ComponentRegistry.h"

#include "FrameWork/_cult/Source/clt_FileStream.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_MemoryBlock.h"

// Distinct first words: the first word is the hash.
const CltGuid CLTCAT_FileStream = {{0x10, 0x4C, 0x7A, 0x2E, 0x91, 0x3B, 0x4D, 0x1F, 0xA2, 0x6E,
                                    0x0C, 0x55, 0xE1, 0x37, 0x80, 0x01}};
const CltGuid CLTID_FileStream = {{0x11, 0x4C, 0x7A, 0x2E, 0x91, 0x3B, 0x4D, 0x1F, 0xA2, 0x6E, 0x0C,
                                   0x55, 0xE1, 0x37, 0x80, 0x02}};
const CltGuid CLTCAT_MemoryBlock = {{0x20, 0x9D, 0x51, 0x6B, 0x2C, 0x84, 0x47, 0xE0, 0xB3, 0x19,
                                     0x7F, 0x42, 0x08, 0xCA, 0x65, 0x01}};
const CltGuid CLTID_MemoryBlock = {{0x21, 0x9D, 0x51, 0x6B, 0x2C, 0x84, 0x47, 0xE0, 0xB3, 0x19,
                                    0x7F, 0x42, 0x08, 0xCA, 0x65, 0x02}};
const CltGuid CLTCAT_ImageReader = {{0x30, 0xE2, 0x08, 0xA4, 0x5D, 0x61, 0x42, 0x9B, 0x8C, 0x73,
                                     0x2A, 0xF0, 0x14, 0x6D, 0xB9, 0x01}};
const CltGuid CLTID_BmpReader = {{0x31, 0xE2, 0x08, 0xA4, 0x5D, 0x61, 0x42, 0x9B, 0x8C, 0x73, 0x2A,
                                  0xF0, 0x14, 0x6D, 0xB9, 0x02}};
const CltGuid CLTID_TgaReader = {{0x32, 0xE2, 0x08, 0xA4, 0x5D, 0x61, 0x42, 0x9B, 0x8C, 0x73, 0x2A,
                                  0xF0, 0x14, 0x6D, 0xB9, 0x03}};

CLT_STATIC(CLT_INIT_GRAPHICS) CltComponentRegistry g_ComponentRegistry;

CltComponentRegistry::CltComponentRegistry() : m_mapById(1024), m_mapByCategory(1024) {}

CltComponentRegistry::~CltComponentRegistry()
{
    m_mapByCategory.ForEach([](const CltGuid&, List* list) { delete list; });
}

void CltComponentRegistry::Register(CltComponent* component)
{
    m_mapById.Set(component->Id(), component);
    List** list = m_mapByCategory.Find(component->Category());
    if (!list)
    {
        m_mapByCategory.Set(component->Category(), new List);
        list = m_mapByCategory.Find(component->Category());
    }
    (*list)->PushBack(component);
}

CltComponent** CltComponentRegistry::ListCategory(const CltGuid& category, uint32_t* count) const
{
    List* const* list = m_mapByCategory.Find(category);
    uint32_t n = 0;
    if (list)
        for (int32_t i = (*list)->Head(); i != -1; i = (*list)->Next(i))
            ++n;
    CltComponent** out = new CltComponent*[n + 1];
    n = 0;
    if (list)
        for (int32_t i = (*list)->Head(); i != -1; i = (*list)->Next(i))
            out[n++] = (*list)->Element(i);
    out[n] = nullptr;
    if (count) *count = n;
    return out;
}

CltComponent* CltComponentRegistry::Find(const CltGuid& id) const
{
    CltComponent* const* found = m_mapById.Find(id);
    return found ? *found : nullptr;
}

bool CltComponentRegistry::CreateInstance(const CltGuid& category, const CltGuid& id,
                                          void** out) const
{
    *out = nullptr;
    CltComponent* component = Find(id);
    if (!component || !CltGuidKeyTraits::Equal(component->Category(), category)) return false;
    return component->CreateInstance(out);
}

namespace
{
CLT_STATIC(CLT_INIT_FILE_STREAM)
CltFactoryComponent<CltFileStream> s_FileStreamComponent(CLTCAT_FileStream, CLTID_FileStream);
CLT_STATIC(CLT_INIT_MEMORY_BLOCK)
CltFactoryComponent<CltMemoryBlock> s_MemoryBlockComponent(CLTCAT_MemoryBlock, CLTID_MemoryBlock);
} // namespace
