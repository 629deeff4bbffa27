#pragma once

#include <windows.h>

#include <oleacc.h>
#include <wrl/client.h>

#include <string>
#include <vector>

namespace kw::test {

// A client of screen readers' interface, as oleacc gives it.
using Accessible = Microsoft::WRL::ComPtr<IAccessible>;

inline VARIANT ChildId(LONG id) {
  VARIANT child = {};
  child.vt = VT_I4;
  child.lVal = id;
  return child;
}

// Null if the window has none.
inline Accessible AccessibleOf(HWND window, LONG object = OBJID_CLIENT) {
  Accessible found;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(object), IID_PPV_ARGS(&found));
  return found;
}

inline std::wstring TakeText(BSTR text) {
  std::wstring taken(text == nullptr ? L"" : text, SysStringLen(text));
  SysFreeString(text);
  return taken;
}

inline std::wstring NameOf(const Accessible& object, LONG id = CHILDID_SELF) {
  BSTR name = nullptr;
  object->get_accName(ChildId(id), &name);
  return TakeText(name);
}

inline std::wstring ValueOf(const Accessible& object, LONG id = CHILDID_SELF) {
  BSTR value = nullptr;
  object->get_accValue(ChildId(id), &value);
  return TakeText(value);
}

inline LONG RoleOf(const Accessible& object, LONG id = CHILDID_SELF) {
  VARIANT role = {};
  object->get_accRole(ChildId(id), &role);
  return role.vt == VT_I4 ? role.lVal : -1;
}

inline bool HasState(const Accessible& object, LONG state, LONG id = CHILDID_SELF) {
  VARIANT found = {};
  object->get_accState(ChildId(id), &found);
  return found.vt == VT_I4 && (found.lVal & state) != 0;
}

// On the screen.
inline RECT PlaceOf(const Accessible& object, LONG id = CHILDID_SELF) {
  LONG left = 0;
  LONG top = 0;
  LONG width = 0;
  LONG height = 0;
  object->accLocation(&left, &top, &width, &height, ChildId(id));
  return {left, top, left + width, top + height};
}

// The child ids of the simple elements, as a client lists them.
inline std::vector<LONG> PartsOf(const Accessible& object) {
  std::vector<LONG> ids;
  LONG count = 0;
  if (FAILED(object->get_accChildCount(&count)) || count <= 0) return ids;
  std::vector<VARIANT> children(static_cast<std::size_t>(count));
  LONG got = 0;
  AccessibleChildren(object.Get(), 0, count, children.data(), &got);
  for (VARIANT& child : children) {
    if (child.vt == VT_I4) ids.push_back(child.lVal);
    VariantClear(&child);
  }
  return ids;
}

// Each window below a window, and itself.
inline std::vector<HWND> WindowsBelow(HWND top) {
  std::vector<HWND> all = {top};
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (HWND child = GetWindow(all[i], GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      all.push_back(child);
    }
  }
  return all;
}

// What a person hears of a window without a name: its class, and which part of it.
inline std::vector<std::wstring> NamelessBelow(HWND top) {
  std::vector<std::wstring> nameless;
  for (const HWND window : WindowsBelow(top)) {
    wchar_t className[64] = {};
    GetClassNameW(window, className, 64);
    const Accessible object = AccessibleOf(window);
    if (object == nullptr) {
      nameless.push_back(std::wstring(className) + L" without an object");
      continue;
    }
    if (NameOf(object).empty()) nameless.emplace_back(className);
    for (const LONG part : PartsOf(object)) {
      if (NameOf(object, part).empty()) nameless.push_back(className + (L" part " + std::to_wstring(part)));
    }
  }
  return nameless;
}

// COM on this thread.
class ComOnThread {
public:
  ComOnThread() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ComOnThread(const ComOnThread&) = delete;
  ComOnThread& operator=(const ComOnThread&) = delete;
  ~ComOnThread() { CoUninitialize(); }
};

}  // namespace kw::test
