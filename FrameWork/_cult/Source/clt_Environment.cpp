// The environment (see clt_Environment.h) and its static instance g_Env.
#include "FrameWork/_cult/Source/clt_Environment.h"

#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Text.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#define CLT_SOURCE "FrameWork/_cult/Source/clt_Environment"

namespace
{
constexpr size_t kExpandBuffer = 1024; // result and name, each at most 1023 characters
}

CltEnvironment::CltEnvironment() : m_table(kBuckets)
{
    clt_GetState()->m_pEnv = this;
    m_table.Set(CltString("__UNDEFINED"), CltString("[Undefined]"));
}

CltEnvironment::~CltEnvironment() = default;

CltString CltEnvironment::Normalise(const char* name)
{
    CltString key(name);
    key.make_upper();
    return key;
}

const CltString& CltEnvironment::Lookup(const CltString& key) const
{
    if (const CltString* value = m_table.Find(key)) return *value;
    static const CltString s_undefinedKey("__UNDEFINED");
    static const CltString s_fallback("[Undefined]");
    const CltString* undefinedText = m_table.Find(s_undefinedKey);
    return undefinedText ? *undefinedText : s_fallback;
}

void CltEnvironment::Set(const char* name, const char* value, bool mustNotBeEmpty)
{
    CltString strSecond(value);
    if (mustNotBeEmpty) CLT_ASSERT(!strSecond.empty());
    CltString key = Normalise(name);
    // An empty name could never be read back, so it is not stored.
    if (!key.empty()) m_table.Set(key, strSecond);
    if (strSecond.empty())
        clt_Trace("%s is empty.\n", name);
    else
        clt_Trace("%s is [%s]\n", name, strSecond.c_str());
}

const CltString& CltEnvironment::operator[](const char* name) const
{
    return Lookup(Normalise(name));
}

int CltEnvironment::Has(const char* name, int resultIfDefined) const
{
    return m_table.Find(Normalise(name)) ? resultIfDefined : 0;
}

// One left-to-right pass with three states. '$' followed by '[' opens a reference that
// ']' closes; a '$' before anything else is kept together with that character. Inserted
// values are not scanned again; references do not nest; a '$' or an unfinished reference
// at the end of the text is dropped. Result and names are cut at 1023 characters.
CltString& CltEnvironment::Expand(CltString& out, const char* text) const
{
    enum class State
    {
        Text,
        Dollar,
        Name
    } state = State::Text;
    char result[kExpandBuffer] = {};
    char name[kExpandBuffer] = {};
    size_t nResult = 0, nName = 0;
    auto put = [&](char c)
    {
        if (nResult < kExpandBuffer - 1) result[nResult++] = c;
    };

    for (const char* p = text ? text : ""; *p; ++p)
    {
        char c = *p;
        switch (state)
        {
        case State::Text:
            if (c == '$')
                state = State::Dollar;
            else
                put(c);
            break;
        case State::Dollar:
            if (c == '[')
            {
                state = State::Name;
                nName = 0;
                name[0] = 0;
            }
            else
            {
                put('$');
                put(c);
                state = State::Text;
            }
            break;
        case State::Name:
            if (c == ']')
            {
                name[nName] = 0;
                const CltString& value = (*this)[name];
                for (const char* v = value.c_str(); *v; ++v)
                    put(*v);
                state = State::Text;
            }
            else if (nName < kExpandBuffer - 1)
                name[nName++] = c;
            break;
        }
    }
    result[nResult] = 0;
    out = result;
    return out;
}

CltString& CltEnvironment::Dump(CltString& out) const
{
    out = "";
    m_table.ForEach(
        [&out](const CltString& key, const CltString& value)
        {
            out += key;
            out += ": ";
            out += value;
            out += "\n";
        });
    return out;
}

CLT_STATIC(CLT_INIT_ENVIRONMENT) CltEnvironment g_Env;
