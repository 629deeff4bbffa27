#include "activex/PropertyBrowsing.h"

#include <olectl.h>

#include <algorithm>
#include <iterator>

#include "activex/ClassFactory.h"
#include "activex/ComBoundary.h"
#include "activex/MiscStatus.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

// Numbers below zero are those of categories that every property window names itself.
enum Category : long { Appearance = -5, Behaviour = -6, Files = 1 };

struct CategoryName {
  Category category;
  const char* name;
};

constexpr CategoryName CategoryNames[] = {{Appearance, "Appearance"}, {Behaviour, "Behavior"}, {Files, "Files"}};

struct CategoryRow {
  DISPID property;
  Category category;
};

constexpr CategoryRow Categories[] = {
    {Editorm_IsFileChangedId, Behaviour},
    {EditorSaveFilePathId, Files},
    {EditorIsToShowBackImageId, Appearance},
    {EditorIsFileChangedId, Behaviour},
    {EditorIsToLightenBackImageId, Appearance},
    {EditorIsToolboxVisibleId, Appearance},
    {EditorSignatureFilePathId, Files},
    {EditorBGImageId, Files},
    {EditorEnabledId, Behaviour},
    {EditorIsOpenButtonVisibleId, Appearance},
    {EditorIsToSaveAsMultiPageFileId, Behaviour},
    {EditorIsToAllowChooseColorId, Behaviour},
    {EditorMaxUndoLevelsId, Behaviour},
    {EditorIsEditableId, Behaviour},
    {EditorIsSaveButtonEnabledId, Behaviour},
    {EditorAppDirId, Files},
};

// Paths that the page has a button for.
bool IsPath(DISPID property) {
  return property == EditorAppDirId || property == EditorBGImageId || property == EditorSignatureFilePathId;
}

// While it lives, COM finds the page in this library, with or without an entry in the registry.
class OfferedPage {
public:
  OfferedPage()
      : isOffered(SUCCEEDED(CoRegisterClassObject(CLSID_KwEditorPage, ClassFactory::Find(CLSID_KwEditorPage),
                                                  CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie))) {}
  OfferedPage(const OfferedPage&) = delete;
  OfferedPage& operator=(const OfferedPage&) = delete;
  ~OfferedPage() {
    if (isOffered) CoRevokeClassObject(cookie);
  }

private:
  DWORD cookie = 0;
  bool isOffered;
};

}  // namespace

STDMETHODIMP PropertyBrowsing::GetPages(CAUUID* pages) {
  if (pages == nullptr) return E_POINTER;
  *pages = {0, static_cast<GUID*>(CoTaskMemAlloc(sizeof(GUID)))};
  if (pages->pElems == nullptr) return E_OUTOFMEMORY;
  pages->cElems = 1;
  pages->pElems[0] = CLSID_KwEditorPage;
  return S_OK;
}

// Every other value a property window writes out itself; the pictures' paths cannot be read.
STDMETHODIMP PropertyBrowsing::GetDisplayString(DISPID property, BSTR* text) {
  return AtComBoundary(core.Life(), [&] {
    if (text == nullptr) return E_POINTER;
    *text = nullptr;
    if (property != EditorAppDirId) return E_NOTIMPL;
    ComPtr<_KwEditorLayers> editor;
    const HRESULT result = core.Life().Unknown().QueryInterface(IID_PPV_ARGS(&editor));
    return FAILED(result) ? result : editor->get_AppDir(text);
  });
}

STDMETHODIMP PropertyBrowsing::MapPropertyToPage(DISPID property, CLSID* page) {
  return AtComBoundary(core.Life(), [&] {
    if (page == nullptr) return E_POINTER;
    const bool hasBuilder = IsPath(property);
    *page = hasBuilder ? CLSID_KwEditorPage : CLSID_NULL;
    return hasBuilder ? S_OK : PERPROP_E_NOPAGEAVAILABLE;
  });
}

// No property has a list of values: a window would offer only those.
STDMETHODIMP PropertyBrowsing::GetPredefinedStrings(DISPID /*property*/, CALPOLESTR* texts, CADWORD* cookies) {
  if (texts == nullptr || cookies == nullptr) return E_POINTER;
  *texts = {};
  *cookies = {};
  return E_NOTIMPL;
}

STDMETHODIMP PropertyBrowsing::GetPredefinedValue(DISPID /*property*/, DWORD /*cookie*/, VARIANT* value) {
  if (value == nullptr) return E_POINTER;
  *value = {};
  return E_NOTIMPL;
}

STDMETHODIMP PropertyBrowsing::MapPropertyToCategory(DISPID property, long* category) {
  if (category == nullptr) return E_POINTER;
  constexpr long Nil = -1;
  *category = Nil;
  for (const CategoryRow& row : Categories) {
    if (row.property != property) continue;
    *category = row.category;
    return S_OK;
  }
  return E_INVALIDARG;
}

STDMETHODIMP PropertyBrowsing::GetCategoryName(long category, LCID /*locale*/, BSTR* name) {
  return AtComBoundary(core.Life(), [&] {
    if (name == nullptr) return E_POINTER;
    *name = nullptr;
    const auto* const found = std::find_if(std::begin(CategoryNames), std::end(CategoryNames),
                                           [category](const CategoryName& row) { return row.category == category; });
    if (found == std::end(CategoryNames)) return E_INVALIDARG;
    *name = Bstr(found->name).Detach();
    return S_OK;
  });
}

HRESULT ShowProperties(EditorCore& core, HWND parent) {
  const Lifetime::Outgoing outgoing(core.Life());
  if (const auto site = core.Site().As<IOleControlSite>(); site != nullptr && site->ShowPropertyFrame() == S_OK)
    return S_OK;
  const auto whileUp = core.Platform().EnterDialog();
  const OfferedPage offered;
  const HWND control = core.Activation().Window();
  const HWND below = control == nullptr ? parent : control;
  const HWND owner = below == nullptr ? nullptr : GetAncestor(below, GA_ROOT);
  IUnknown* object = &core.Life().Unknown();
  CLSID page = CLSID_KwEditorPage;
  return OleCreatePropertyFrame(owner, 0, 0, static_cast<LPCOLESTR>(UserTypeName), 1, &object, 1, &page,
                                LOCALE_USER_DEFAULT, 0, nullptr);
}

}  // namespace kw::activex
