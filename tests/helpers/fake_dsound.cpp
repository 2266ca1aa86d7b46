// Stand-ins for the system's DSOUND.DLL, put into a throwaway prefix's system folder:
// built with FAKE_DSOUND_NO_ENTRY it lacks DirectSoundCreate; otherwise DirectSoundCreate
// gives a device that refuses every cooperative level.
#include <windows.h>

#include <dsound.h>

#ifdef FAKE_DSOUND_NO_ENTRY
extern "C" __declspec(dllexport) int FakeDirectSoundWithoutEntry()
{
    return 1;
}
#else
namespace
{
class RefusingDevice final : public IDirectSound
{
  public:
    virtual ~RefusingDevice() = default;
    STDMETHOD(QueryInterface)(REFIID, void** out) override
    {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHOD_(ULONG, AddRef)() override { return ++m_refs; }
    STDMETHOD_(ULONG, Release)() override
    {
        ULONG left = --m_refs;
        if (!left) delete this;
        return left;
    }
    STDMETHOD(CreateSoundBuffer)(LPCDSBUFFERDESC, LPLPDIRECTSOUNDBUFFER, LPUNKNOWN) override
    {
        return E_NOTIMPL;
    }
    STDMETHOD(GetCaps)(LPDSCAPS) override { return E_NOTIMPL; }
    STDMETHOD(DuplicateSoundBuffer)(LPDIRECTSOUNDBUFFER, LPLPDIRECTSOUNDBUFFER) override
    {
        return E_NOTIMPL;
    }
    STDMETHOD(SetCooperativeLevel)(HWND, DWORD) override { return DSERR_INVALIDPARAM; }
    STDMETHOD(Compact)() override { return DS_OK; }
    STDMETHOD(GetSpeakerConfig)(LPDWORD) override { return E_NOTIMPL; }
    STDMETHOD(SetSpeakerConfig)(DWORD) override { return E_NOTIMPL; }
    STDMETHOD(Initialize)(LPCGUID) override { return DS_OK; }

  private:
    ULONG m_refs = 1;
};
} // namespace

extern "C" __declspec(dllexport) HRESULT WINAPI
    DirectSoundCreate(LPCGUID, LPDIRECTSOUND* out, LPUNKNOWN)
{
    *out = new RefusingDevice;
    return DS_OK;
}
#endif
