// CltAccessible: the client area of a window of widgets as screen readers see it.
#include "FrameWork/_cult/Source/clt_Accessible.h"

#include "FrameWork/_cult/Source/clt_AccessibleParts.h"
#include "FrameWork/_cult/Source/clt_SystemEntries.h"
#include "FrameWork/_cult/Source/clt_Widget.h"

#include <vector>

namespace
{
BSTR MakeText(const char* text, UINT codePage)
{
    int length = MultiByteToWideChar(codePage, 0, text, -1, nullptr, 0);
    if (length <= 0) return nullptr;
    std::vector<wchar_t> wide(static_cast<size_t>(length));
    MultiByteToWideChar(codePage, 0, text, -1, wide.data(), length);
    return clt_SysAllocStringLen(wide.data(), UINT(length - 1));
}

void SetInteger(VARIANT* v, long value)
{
    v->vt = VT_I4;
    v->lVal = value;
}
} // namespace

CltAccessible::CltAccessible(HWND window, CltRootWidget* root) : m_hWnd(window), m_pRoot(root) {}

void CltAccessible::Disconnect()
{
    m_hWnd = nullptr;
    m_pRoot = nullptr;
}

HRESULT CltAccessible::Resolve(const VARIANT& child, CltWidget*& part) const
{
    part = nullptr;
    if (!m_pRoot) return RPC_E_DISCONNECTED;
    if (child.vt != VT_I4) return E_INVALIDARG;
    if (child.lVal == CHILDID_SELF) return S_OK;
    part = clt_AccessiblePart(m_pRoot, child.lVal);
    return part ? S_OK : E_INVALIDARG;
}

HRESULT CltAccessible::QueryInterface(REFIID id, void** object)
{
    if (!object) return E_POINTER;
    if (id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(IAccessible))
    {
        *object = static_cast<IAccessible*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG CltAccessible::AddRef()
{
    return ULONG(InterlockedIncrement(&m_nReferences));
}

ULONG CltAccessible::Release()
{
    LONG left = InterlockedDecrement(&m_nReferences);
    if (left == 0) delete this;
    return ULONG(left);
}

HRESULT CltAccessible::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT CltAccessible::GetTypeInfo(UINT, LCID, ITypeInfo**)
{
    return E_NOTIMPL;
}

HRESULT CltAccessible::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*)
{
    return E_NOTIMPL;
}

HRESULT CltAccessible::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
{
    return E_NOTIMPL;
}

// The window's frame, as the system describes it.
HRESULT CltAccessible::get_accParent(IDispatch** parent)
{
    *parent = nullptr;
    if (!m_pRoot) return RPC_E_DISCONNECTED;
    return clt_CreateStdAccessibleObject(m_hWnd, OBJID_WINDOW, __uuidof(IDispatch),
                                         reinterpret_cast<void**>(parent));
}

HRESULT CltAccessible::get_accChildCount(long* count)
{
    *count = 0;
    if (!m_pRoot) return RPC_E_DISCONNECTED;
    *count = clt_AccessiblePartCount(m_pRoot);
    return S_OK;
}

// The parts are simple elements: no object of their own.
HRESULT CltAccessible::get_accChild(VARIANT child, IDispatch** object)
{
    *object = nullptr;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    return part ? S_FALSE : E_INVALIDARG;
}

HRESULT CltAccessible::get_accName(VARIANT child, BSTR* name)
{
    *name = nullptr;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    if (part)
    {
        CltAccessibleInfo info = part->Describe();
        *name = MakeText(info.name, info.codePage ? info.codePage : CP_ACP);
    }
    else
    {
        char text[256] = {};
        GetWindowTextA(m_hWnd, text, sizeof text);
        *name = MakeText(text, CP_ACP);
    }
    return *name ? S_OK : E_OUTOFMEMORY;
}

HRESULT CltAccessible::get_accValue(VARIANT child, BSTR* value)
{
    *value = nullptr;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    return FAILED(result) ? result : DISP_E_MEMBERNOTFOUND;
}

HRESULT CltAccessible::get_accDescription(VARIANT child, BSTR* text)
{
    return get_accValue(child, text);
}

HRESULT CltAccessible::get_accRole(VARIANT child, VARIANT* role)
{
    role->vt = VT_EMPTY;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    SetInteger(role, part ? ROLE_SYSTEM_PUSHBUTTON : ROLE_SYSTEM_CLIENT);
    return S_OK;
}

// Focused only while the window has the keyboard focus: the client when no part has it.
HRESULT CltAccessible::get_accState(VARIANT child, VARIANT* state)
{
    state->vt = VT_EMPTY;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    bool windowFocused = GetFocus() == m_hWnd;
    long flags = 0;
    if (part)
    {
        if (part->HasFlag(CltWidgetFocusable)) flags |= STATE_SYSTEM_FOCUSABLE;
        if (windowFocused && m_pRoot->Focus() == part) flags |= STATE_SYSTEM_FOCUSED;
        if (part->Describe().pressed) flags |= STATE_SYSTEM_PRESSED;
    }
    else
    {
        flags = STATE_SYSTEM_FOCUSABLE;
        if (windowFocused && !m_pRoot->Focus()) flags |= STATE_SYSTEM_FOCUSED;
    }
    SetInteger(state, flags);
    return S_OK;
}

HRESULT CltAccessible::get_accHelp(VARIANT child, BSTR* help)
{
    return get_accValue(child, help);
}

HRESULT CltAccessible::get_accHelpTopic(BSTR* file, VARIANT child, long* topic)
{
    *topic = -1;
    return get_accValue(child, file);
}

HRESULT CltAccessible::get_accKeyboardShortcut(VARIANT child, BSTR* keys)
{
    return get_accValue(child, keys);
}

HRESULT CltAccessible::get_accFocus(VARIANT* child)
{
    child->vt = VT_EMPTY;
    if (!m_pRoot) return RPC_E_DISCONNECTED;
    if (GetFocus() != m_hWnd) return S_FALSE;
    SetInteger(child, clt_AccessiblePartNumber(m_pRoot, m_pRoot->Focus()));
    return S_OK;
}

HRESULT CltAccessible::get_accSelection(VARIANT* children)
{
    children->vt = VT_EMPTY;
    return m_pRoot ? S_FALSE : RPC_E_DISCONNECTED;
}

HRESULT CltAccessible::get_accDefaultAction(VARIANT child, BSTR* action)
{
    *action = nullptr;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    if (!part) return S_FALSE;
    *action = MakeText("Press", CP_ACP);
    return *action ? S_OK : E_OUTOFMEMORY;
}

// Taking the focus moves the tree's focus to a focusable part, as Tab would.
HRESULT CltAccessible::accSelect(long flags, VARIANT child)
{
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    if (flags != SELFLAG_TAKEFOCUS || !part || !part->HasFlag(CltWidgetFocusable))
        return E_INVALIDARG;
    m_pRoot->SetFocusWidget(part);
    return S_OK;
}

HRESULT CltAccessible::accLocation(long* left, long* top, long* width, long* height, VARIANT child)
{
    *left = *top = *width = *height = 0;
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    RECT r;
    if (part)
        r = {part->Rect().left, part->Rect().top, part->Rect().right, part->Rect().bottom};
    else
        GetClientRect(m_hWnd, &r);
    MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(&r), 2);
    *left = r.left, *top = r.top, *width = r.right - r.left, *height = r.bottom - r.top;
    return S_OK;
}

// The parts in their order: the client's first and last child, a part's neighbours.
HRESULT CltAccessible::accNavigate(long direction, VARIANT start, VARIANT* end)
{
    end->vt = VT_EMPTY;
    CltWidget* part;
    HRESULT result = Resolve(start, part);
    if (FAILED(result)) return result;
    long count = clt_AccessiblePartCount(m_pRoot), at = start.lVal, to = 0;
    if (!part && direction == NAVDIR_FIRSTCHILD) to = 1;
    if (!part && direction == NAVDIR_LASTCHILD) to = count;
    if (part && (direction == NAVDIR_NEXT || direction == NAVDIR_DOWN)) to = at + 1;
    if (part && (direction == NAVDIR_PREVIOUS || direction == NAVDIR_UP)) to = at - 1;
    if (to < 1 || to > count) return S_FALSE;
    SetInteger(end, to);
    return S_OK;
}

HRESULT CltAccessible::accHitTest(long x, long y, VARIANT* child)
{
    child->vt = VT_EMPTY;
    if (!m_pRoot) return RPC_E_DISCONNECTED;
    POINT p = {x, y};
    RECT client;
    ScreenToClient(m_hWnd, &p);
    GetClientRect(m_hWnd, &client);
    if (!PtInRect(&client, p)) return S_FALSE;
    SetInteger(child, clt_AccessiblePartAt(m_pRoot, p.x, p.y));
    return S_OK;
}

// Posted, not run here: the command may change the page or open a box, and the reader's
// call must return first.
HRESULT CltAccessible::accDoDefaultAction(VARIANT child)
{
    CltWidget* part;
    HRESULT result = Resolve(child, part);
    if (FAILED(result)) return result;
    if (!part) return DISP_E_MEMBERNOTFOUND;
    PostMessageA(m_hWnd, CltMsgActivatePart, WPARAM(child.lVal), LPARAM(part->Id()));
    return S_OK;
}

HRESULT CltAccessible::put_accName(VARIANT, BSTR)
{
    return E_NOTIMPL;
}

HRESULT CltAccessible::put_accValue(VARIANT, BSTR)
{
    return E_NOTIMPL;
}
