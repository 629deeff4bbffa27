#include "tests/activex/PageFrame.h"

#include <gtest/gtest.h>

namespace kw::test {

PageFrame::PageFrame()
    : window(CreateWindowExW(WS_EX_CONTROLPARENT, L"Static", L"Frame", WS_POPUP | WS_VISIBLE, 0, 0, 600, 500, nullptr,
                             nullptr, nullptr, nullptr)) {
  if (const auto factory = Ocx::Factory(CLSID_KwEditorPage)) {
    EXPECT_HRESULT_SUCCEEDED(factory->CreateInstance(nullptr, IID_PPV_ARGS(&page)));
  }
}

PageFrame::~PageFrame() {
  if (page != nullptr) page->SetPageSite(nullptr);
  page.Reset();
  EXPECT_EQ(references, 1U) << "the page keeps its site";
  if (window != nullptr) DestroyWindow(window);
}

void PageFrame::Open(const std::vector<IUnknown*>& controls) {
  auto objects = controls;
  PROPPAGEINFO info = {};
  info.cb = sizeof info;
  ASSERT_EQ(page->SetPageSite(this), S_OK);
  ASSERT_EQ(page->GetPageInfo(&info), S_OK);
  EXPECT_STREQ(info.pszTitle, L"General");
  CoTaskMemFree(info.pszTitle);
  ASSERT_EQ(page->SetObjects(static_cast<ULONG>(objects.size()), objects.data()), S_OK);
  const RECT place = {10, 10, 10 + info.size.cx, 10 + info.size.cy};
  ASSERT_EQ(page->Activate(window, &place, FALSE), S_OK);
  ASSERT_EQ(page->Show(SW_SHOW), S_OK);
}

void PageFrame::Close() const {
  EXPECT_EQ(page->Deactivate(), S_OK);
  EXPECT_EQ(PageWindow(), nullptr);
  EXPECT_EQ(page->SetObjects(0, nullptr), S_OK);
}

std::wstring PageFrame::TextOf(int control) const {
  wchar_t text[300] = {};
  GetWindowTextW(Item(control), text, 300);
  return text;
}

void PageFrame::Type(int control, const std::wstring& text) const { SetWindowTextW(Item(control), text.c_str()); }

void PageFrame::Click(int control) const { SendMessageW(Item(control), BM_CLICK, 0, 0); }

STDMETHODIMP PageFrame::QueryInterface(REFIID iid, void** object) {
  const bool isKnown = iid == IID_IUnknown || iid == IID_IPropertyPageSite;
  *object = isKnown ? static_cast<IPropertyPageSite*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP PageFrame::OnStatusChange(DWORD flags) {
  states.push_back(flags);
  if (onStatusChange) onStatusChange();
  return S_OK;
}

STDMETHODIMP PageFrame::GetLocaleID(LCID* locale) {
  *locale = LOCALE_USER_DEFAULT;
  return S_OK;
}

STDMETHODIMP PageFrame::GetPageContainer(IUnknown** container) {
  *container = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP PageFrame::TranslateAccelerator(MSG* /*message*/) {
  ++offeredKeys;
  return takesKeys;
}

}  // namespace kw::test
