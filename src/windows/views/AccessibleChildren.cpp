// The children of a window to screen readers: first the parts that it draws, back to front, then its child windows.

#include <algorithm>
#include <iterator>
#include <vector>

#include "windows/views/AccessibleBoundary.h"
#include "windows/views/AccessibleObject.h"

namespace kw::windows {
namespace {

constexpr HRESULT Nothing = S_FALSE;

void SetId(VARIANT* variant, LONG id) {
  variant->vt = VT_I4;
  variant->lVal = id;
}

// A child window as an object of its own.
HRESULT GiveWindow(HWND window, VARIANT* child) {
  IDispatch* object = nullptr;
  const HRESULT result = AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_WINDOW), IID_PPV_ARGS(&object));
  if (FAILED(result)) return result;
  child->vt = VT_DISPATCH;
  child->pdispVal = object;
  return S_OK;
}

}  // namespace

STDMETHODIMP AccessibleObject::get_accChildCount(LONG* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return AtClient([&] {
    const auto parts = static_cast<LONG>(source->Parts().size());
    const HRESULT result = standard->get_accChildCount(count);
    *count += parts;
    return result;
  });
}

STDMETHODIMP AccessibleObject::get_accChild(VARIANT child, IDispatch** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    if (FAILED(found)) return found;
    if (child.lVal == CHILDID_SELF) return QueryInterface(IID_PPV_ARGS(object));
    // A part is no object of its own.
    return found == S_OK ? Nothing : standard->get_accChild(child, object);
  });
}

LONG AccessibleObject::Selected() const {
  const std::vector<AccessibleAnswer> parts = source->Parts();
  const auto selected = std::ranges::find_if(parts, [](const AccessibleAnswer& part) {
    return (static_cast<ULONG>(part.state) & STATE_SYSTEM_SELECTED) != 0;
  });
  return selected == parts.end() ? LONG{CHILDID_SELF} : selected->id;
}

STDMETHODIMP AccessibleObject::get_accFocus(VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  child->vt = VT_EMPTY;
  return AtClient([&] {
    const LONG selected = Selected();
    if (selected == CHILDID_SELF || GetFocus() != window) return standard->get_accFocus(child);
    SetId(child, selected);
    return S_OK;
  });
}

STDMETHODIMP AccessibleObject::get_accSelection(VARIANT* children) {
  if (children == nullptr) return E_POINTER;
  children->vt = VT_EMPTY;
  return AtClient([&] {
    if (source->HasSystemsParts()) return standard->get_accSelection(children);
    const LONG selected = Selected();
    if (selected == CHILDID_SELF) return Nothing;
    SetId(children, selected);
    return S_OK;
  });
}

STDMETHODIMP AccessibleObject::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) {
  if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_POINTER;
  *left = *top = *width = *height = 0;
  return AtClient([&] {
    AccessibleAnswer asked;
    const HRESULT found = Find(child, asked);
    if (FAILED(found)) return found;
    if (asked.id == CHILDID_SELF) return standard->accLocation(left, top, width, height, child);
    // Two points of a rectangle: in a mirrored window the system keeps left below right.
    RECT place = asked.place;
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&place), 2);
    *left = place.left;
    *top = place.top;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
    return S_OK;
  });
}

STDMETHODIMP AccessibleObject::accNavigate(LONG direction, VARIANT start, VARIANT* end) {
  if (end == nullptr) return E_POINTER;
  end->vt = VT_EMPTY;
  return AtClient([&] { return Navigate(direction, start, end); });
}

HRESULT AccessibleObject::Navigate(LONG direction, const VARIANT& start, VARIANT* end) {
  AccessibleAnswer asked;
  const HRESULT found = Find(start, asked);
  if (FAILED(found)) return found;
  const bool isInside = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
  const bool isWindow = asked.id == CHILDID_SELF;
  if (isWindow && (source->HasSystemsParts() || !isInside)) return standard->accNavigate(direction, start, end);
  if (!isWindow && isInside) return E_INVALIDARG;  // a part has no children
  const std::vector<AccessibleAnswer> parts = source->Parts();
  const auto here = std::ranges::find(parts, asked.id, &AccessibleAnswer::id);
  const HWND firstChild = GetWindow(window, GW_CHILD);
  if (direction == NAVDIR_LASTCHILD && firstChild != nullptr)
    return GiveWindow(GetWindow(firstChild, GW_HWNDLAST), end);
  auto next = parts.end();
  if (direction == NAVDIR_FIRSTCHILD) next = parts.begin();
  if (direction == NAVDIR_LASTCHILD && !parts.empty()) next = std::prev(parts.end());
  if (direction == NAVDIR_PREVIOUS && here != parts.begin()) next = std::prev(here);
  if (direction == NAVDIR_NEXT && here != parts.end()) next = std::next(here);
  if (next != parts.end()) {
    SetId(end, next->id);
    return S_OK;
  }
  // The windows follow the parts.
  const bool isForward = direction == NAVDIR_NEXT || direction == NAVDIR_FIRSTCHILD;
  return isForward && firstChild != nullptr ? GiveWindow(firstChild, end) : Nothing;
}

STDMETHODIMP AccessibleObject::accHitTest(LONG x, LONG y, VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  child->vt = VT_EMPTY;
  return AtClient([&] {
    return source->HasSystemsParts() ? standard->accHitTest(x, y, child) : HitTest({x, y}, child);
  });
}

// The system's test may find windows that are hidden.
HRESULT AccessibleObject::HitTest(POINT point, VARIANT* child) {
  ScreenToClient(window, &point);
  RECT client = {};
  GetClientRect(window, &client);
  if (IsWindowVisible(window) == FALSE || PtInRect(&client, point) == FALSE) return Nothing;
  const HWND under = ChildWindowFromPointEx(window, point, CWP_SKIPINVISIBLE);
  if (under == nullptr || under == window) {
    SetId(child, source->PartAt(point));
    return S_OK;
  }
  return GiveWindow(under, child);
}

STDMETHODIMP AccessibleObject::Next(ULONG count, VARIANT* children, ULONG* fetched) {
  if (children == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
  if (fetched != nullptr) *fetched = 0;
  return AtClient([&] { return NextChildren(count, children, fetched); });
}

HRESULT AccessibleObject::NextChildren(ULONG count, VARIANT* children, ULONG* fetched) {
  const std::vector<AccessibleAnswer> parts = source->Parts();
  ULONG given = 0;
  for (; given < count && position < parts.size(); ++given, ++position) SetId(&children[given], parts[position].id);
  ULONG more = 0;
  if (given < count && childWindows != nullptr) childWindows->Next(count - given, children + given, &more);
  if (fetched != nullptr) *fetched = given + more;
  return given + more == count ? S_OK : S_FALSE;
}

STDMETHODIMP AccessibleObject::Skip(ULONG count) {
  return AtClient([&] {
    const std::size_t parts = source->Parts().size();
    const std::size_t left = position < parts ? parts - position : 0;
    const auto here = static_cast<ULONG>(std::min<std::size_t>(left, count));
    position += here;
    if (here == count) return S_OK;
    return childWindows == nullptr ? S_FALSE : childWindows->Skip(count - here);
  });
}

STDMETHODIMP AccessibleObject::Reset() {
  return AtClient([&] {
    position = 0;
    return childWindows == nullptr ? S_OK : childWindows->Reset();
  });
}

STDMETHODIMP AccessibleObject::Clone(IEnumVARIANT** copy) {
  if (copy == nullptr) return E_POINTER;
  *copy = nullptr;
  // A copy would have to be told, too, if the window goes.
  return AtClient([] { return E_NOTIMPL; });
}

}  // namespace kw::windows
