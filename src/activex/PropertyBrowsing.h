#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"
#include "activex/KwEditor.h"

namespace kw::activex {

// What property windows ask: the property page, the properties that are better edited there, and the categories.
class PropertyBrowsing : public ISpecifyPropertyPages, public IPerPropertyBrowsing, public ICategorizeProperties {
public:
  STDMETHODIMP GetPages(CAUUID* pages) override;

  STDMETHODIMP GetDisplayString(DISPID property, BSTR* text) override;
  STDMETHODIMP MapPropertyToPage(DISPID property, CLSID* page) override;
  STDMETHODIMP GetPredefinedStrings(DISPID property, CALPOLESTR* texts, CADWORD* cookies) override;
  STDMETHODIMP GetPredefinedValue(DISPID property, DWORD cookie, VARIANT* value) override;

  STDMETHODIMP MapPropertyToCategory(DISPID property, long* category) override;
  STDMETHODIMP GetCategoryName(long category, LCID locale, BSTR* name) override;

protected:
  explicit PropertyBrowsing(EditorCore& shared) : core(shared) {}
  ~PropertyBrowsing() = default;

private:
  EditorCore& core;
};

// The verb OLEIVERB_PROPERTIES: the container shows the properties, or else the system's property frame does, above the
// control or `parent`. Returns when they are closed.
HRESULT ShowProperties(EditorCore& core, HWND parent);

}  // namespace kw::activex
