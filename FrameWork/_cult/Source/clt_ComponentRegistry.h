// The component registry: statically allocated components that name a category id and an
// own id (16 raw bytes in the layout of a GUID) and register themselves during static
// initialisation. Components are found by own id, or listed by category in registration
// order. Components are never deleted.
#pragma once

#include <cstdint>

#include "FrameWork/_cult/Source/clt_HashMap.h"
#include "FrameWork/_cult/Source/clt_IndexList.h"

class CltComponent
{
  public:
    CltComponent(const CltGuid& category, const CltGuid& id) : m_Category(category), m_Id(id) {}
    CltComponent(const CltComponent&) = delete;
    CltComponent& operator=(const CltComponent&) = delete;

    // Makes a new object of the component's kind.
    virtual bool CreateInstance(void** out) = 0;
    // Hands out the interface that the component itself implements.
    virtual bool GetInterface(void** out) = 0;

    const CltGuid& Category() const { return m_Category; }
    const CltGuid& Id() const { return m_Id; }

  protected:
    ~CltComponent() = default;

  private:
    CltGuid m_Category, m_Id;
};

class CltComponentRegistry
{
  public:
    CltComponentRegistry();
    ~CltComponentRegistry();
    CltComponentRegistry(const CltComponentRegistry&) = delete;
    CltComponentRegistry& operator=(const CltComponentRegistry&) = delete;

    void Register(CltComponent* component);
    // The category's components in registration order, ended by none; *count gets their
    // number. The caller frees the array with delete[].
    CltComponent** ListCategory(const CltGuid& category, uint32_t* count) const;
    // The component with this own id, if its category is the given one.
    bool CreateInstance(const CltGuid& category, const CltGuid& id, void** out) const;
    CltComponent* Find(const CltGuid& id) const;

  private:
    using List = CltIndexList<CltComponent*>;
    CltHashMap<CltGuid, CltComponent*, CltGuidKeyTraits> m_mapById;
    CltHashMap<CltGuid, List*, CltGuidKeyTraits> m_mapByCategory;
};

extern CltComponentRegistry g_ComponentRegistry;

// The framework's component ids.
extern const CltGuid CLTCAT_FileStream, CLTID_FileStream;
extern const CltGuid CLTCAT_MemoryBlock, CLTID_MemoryBlock;
extern const CltGuid CLTCAT_ImageReader, CLTID_BmpReader, CLTID_TgaReader;

// A component that makes objects of class T with new.
template <typename T> class CltFactoryComponent : public CltComponent
{
  public:
    CltFactoryComponent(const CltGuid& category, const CltGuid& id) : CltComponent(category, id)
    {
        g_ComponentRegistry.Register(this);
    }
    bool CreateInstance(void** out) override
    {
        *out = new T;
        return true;
    }
    bool GetInterface(void** out) override
    {
        *out = nullptr;
        return false;
    }
};
