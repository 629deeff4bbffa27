#pragma once

#include <windows.h>

#include <oleacc.h>
#include <wrl/client.h>

#include <atomic>

#include "windows/views/AccessibleSource.h"

namespace kw::windows {

// A window to screen readers. It says what its source knows, and leaves the rest to the system's object for such a
// window. The parts that the window draws are simple elements of it; IEnumVARIANT lists them, then the child windows.
//
// The object is one of the window's thread: clients of other threads and processes get it marshalled. A client that
// calls it on another thread directly gets RPC_E_WRONG_THREAD.
class AccessibleObject final : public IAccessible, public IEnumVARIANT {
public:
  // With one reference; null if the system has no object for the window.
  static AccessibleObject* Make(HWND window, AccessibleSource& source);
  AccessibleObject(const AccessibleObject&) = delete;
  AccessibleObject& operator=(const AccessibleObject&) = delete;

  void Disconnect() { source = nullptr; }
  static bool AreHeld() { return living != 0; }

  STDMETHOD(QueryInterface)(REFIID iid, void** result) override;
  STDMETHOD_(ULONG, AddRef)() override;
  STDMETHOD_(ULONG, Release)() override;

  STDMETHOD(GetTypeInfoCount)(UINT* count) override;
  STDMETHOD(GetTypeInfo)(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHOD(GetIDsOfNames)(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHOD(Invoke)
  (DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* error,
   UINT* wrong) override;

  STDMETHOD(get_accParent)(IDispatch** parent) override;
  STDMETHOD(get_accChildCount)(LONG* count) override;
  STDMETHOD(get_accChild)(VARIANT child, IDispatch** object) override;
  STDMETHOD(get_accName)(VARIANT child, BSTR* name) override;
  STDMETHOD(get_accValue)(VARIANT child, BSTR* value) override;
  STDMETHOD(get_accDescription)(VARIANT child, BSTR* description) override;
  STDMETHOD(get_accRole)(VARIANT child, VARIANT* role) override;
  STDMETHOD(get_accState)(VARIANT child, VARIANT* state) override;
  STDMETHOD(get_accHelp)(VARIANT child, BSTR* help) override;
  STDMETHOD(get_accHelpTopic)(BSTR* file, VARIANT child, LONG* topic) override;
  STDMETHOD(get_accKeyboardShortcut)(VARIANT child, BSTR* key) override;
  STDMETHOD(get_accFocus)(VARIANT* child) override;
  STDMETHOD(get_accSelection)(VARIANT* children) override;
  STDMETHOD(get_accDefaultAction)(VARIANT child, BSTR* action) override;
  STDMETHOD(accSelect)(LONG flags, VARIANT child) override;
  STDMETHOD(accLocation)(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override;
  STDMETHOD(accNavigate)(LONG direction, VARIANT start, VARIANT* end) override;
  STDMETHOD(accHitTest)(LONG x, LONG y, VARIANT* child) override;
  STDMETHOD(accDoDefaultAction)(VARIANT child) override;
  STDMETHOD(put_accName)(VARIANT child, BSTR name) override;
  STDMETHOD(put_accValue)(VARIANT child, BSTR value) override;

  STDMETHOD(Next)(ULONG count, VARIANT* children, ULONG* fetched) override;
  STDMETHOD(Skip)(ULONG count) override;
  STDMETHOD(Reset)() override;
  STDMETHOD(Clone)(IEnumVARIANT** copy) override;

private:
  AccessibleObject(HWND asked, AccessibleSource& answering) : window(asked), source(&answering) { ++living; }
  ~AccessibleObject() { --living; }

  // Runs a client's call: turns exceptions of `work` into an HRESULT, keeps the object alive until the call returns,
  // and refuses calls without a window or on another thread.
  template <class Work>
  HRESULT AtClient(Work work) noexcept;
  // Looks for the window itself or a part: S_OK, S_FALSE for a child that only the system knows, or E_INVALIDARG.
  HRESULT Find(const VARIANT& child, AccessibleAnswer& found) const;
  // A text of the window or of a part: what `member` holds, else what the system's method says.
  HRESULT Text(const VARIANT& child, std::wstring AccessibleAnswer::*member,
               HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, BSTR*), BSTR* text);
  // As above, of texts that only the system has.
  HRESULT SystemsText(const VARIANT& child, HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, BSTR*),
                      BSTR* text);
  HRESULT Number(const VARIANT& child, LONG AccessibleAnswer::*member, bool isAdded,
                 HRESULT (STDMETHODCALLTYPE IAccessible::*systems)(VARIANT, VARIANT*), VARIANT* number);
  HRESULT Navigate(LONG direction, const VARIANT& start, VARIANT* end);
  HRESULT HitTest(POINT point, VARIANT* child);
  HRESULT NextChildren(ULONG count, VARIANT* children, ULONG* fetched);
  // The child id of the selected part; 0 if none is.
  LONG Selected() const;

  static std::atomic<long> living;

  std::atomic<ULONG> references = 1;
  const DWORD thread = GetCurrentThreadId();
  HWND window;
  AccessibleSource* source;  // null: disconnected
  Microsoft::WRL::ComPtr<IAccessible> standard;
  Microsoft::WRL::ComPtr<IEnumVARIANT> childWindows;
  std::size_t position = 0;  // of the parts that Next has given
};

}  // namespace kw::windows
