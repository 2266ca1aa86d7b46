// CltEnvironment and g_Env: the process-wide dictionary of named texts.
//
// Names are case-insensitive (stored upper-cased with the ANSI upper-casing); values are
// stored as given and may be empty. A name that was never set reads as the value of
// __UNDEFINED, which construction sets to "[Undefined]". Entries are never removed;
// setting a name again replaces its value in place. Every Set is traced.
#pragma once

#include "FrameWork/_cult/Source/clt_HashMap.h"
#include "FrameWork/_cult/Source/clt_String.h"

class CltEnvironment
{
  public:
    CltEnvironment();
    virtual ~CltEnvironment();
    CltEnvironment(const CltEnvironment&) = delete;
    CltEnvironment& operator=(const CltEnvironment&) = delete;

    void Set(const char* name, const char* value, bool mustNotBeEmpty);
    const CltString& operator[](const char* name) const;
    int Has(const char* name, int resultIfDefined) const;
    // Replaces every $[Name] reference in 'text' by the named value; see the .cpp.
    CltString& Expand(CltString& out, const char* text) const;
    // One line "KEY: value\n" per entry, buckets in ascending order, then insertion order.
    CltString& Dump(CltString& out) const;

    static constexpr uint32_t kBuckets = 1024;

  private:
    static CltString Normalise(const char* name);
    const CltString& Lookup(const CltString& key) const;

    CltHashMap<CltString, CltString, CltStringKeyTraits> m_table;
};

extern CltEnvironment g_Env;
