#pragma once

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"

namespace kw::test {

// A property frame of the test's own around the control's property page. It does what its page asks for, and counts its
// references.
class PageFrame final : public IPropertyPageSite {
public:
  PageFrame();
  PageFrame(const PageFrame&) = delete;
  PageFrame& operator=(const PageFrame&) = delete;
  ~PageFrame();

  // Opens the page for these controls.
  void Open(const std::vector<IUnknown*>& controls);
  void Close() const;

  HWND Item(int control) const { return GetDlgItem(PageWindow(), control); }
  std::wstring TextOf(int control) const;
  UINT TickOf(int control) const { return IsDlgButtonChecked(PageWindow(), control); }
  // As the user does it.
  void Type(int control, const std::wstring& text) const;
  void Click(int control) const;
  // The child window that is the page.
  HWND PageWindow() const { return FindWindowExW(window, nullptr, L"#32770", nullptr); }

  ComPtr<IPropertyPage2> page;
  HWND window;
  std::vector<DWORD> states;             // what the page said of itself
  std::function<void()> onStatusChange;  // runs then
  HRESULT takesKeys = S_FALSE;
  int offeredKeys = 0;
  ULONG references = 1;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP OnStatusChange(DWORD flags) override;
  STDMETHODIMP GetLocaleID(LCID* locale) override;
  STDMETHODIMP GetPageContainer(IUnknown** container) override;
  STDMETHODIMP TranslateAccelerator(MSG* message) override;
};

// A control on a thread with OLE, for whose pages a frame opens.
class PageTest : public ControlTest {
protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    ControlTest::SetUp();
  }
  void TearDown() override {
    ControlTest::TearDown();
    OleUninitialize();
  }
};

}  // namespace kw::test
