#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <cstddef>
#include <memory>
#include <optional>

#include "activex/Lifetime.h"
#include "activex/ObjectProperties.h"
#include "windows/properties/PropertyEntries.h"
#include "windows/properties/PropertyPageWindow.h"

namespace kw::activex {

// The control's property page: shows the properties that a container keeps, and the pictures. A property frame creates
// it, gives it one or more controls and a site, and a window to lie in; it may do so in any order and more than once.
class PropertyPage final : public IPropertyPage2 {
public:
  static HRESULT Create(IUnknown* controlling, REFIID iid, void** object);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP SetPageSite(IPropertyPageSite* pageSite) override;
  STDMETHODIMP Activate(HWND parent, LPCRECT place, BOOL modal) override;
  STDMETHODIMP Deactivate() override;
  STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
  STDMETHODIMP SetObjects(ULONG count, IUnknown** unknowns) override;
  STDMETHODIMP Show(UINT command) override;
  STDMETHODIMP Move(LPCRECT place) override;
  STDMETHODIMP IsPageDirty() override;
  STDMETHODIMP Apply() override;
  STDMETHODIMP Help(LPCOLESTR folder) override;
  STDMETHODIMP TranslateAccelerator(MSG* message) override;
  STDMETHODIMP EditProperty(DISPID property) override;

private:
  PropertyPage();
  ~PropertyPage();

  bool HasWindow() const { return window != nullptr && window->Handle() != nullptr; }
  void ReadObjects();
  HRESULT ApplyField(std::size_t field);
  HRESULT Refuse(std::size_t field, const std::string& reason, HRESULT result);
  void TellStatus();

  ULONG references = 1;
  Lifetime life;
  ObjectProperties objects;
  Microsoft::WRL::ComPtr<IPropertyPageSite> site;
  std::shared_ptr<windows::PropertyEntries> entries;
  std::shared_ptr<windows::PropertyPageWindow> window;
  std::optional<std::size_t> wanted;  // the field that gets the keyboard when the page is shown
};

}  // namespace kw::activex
