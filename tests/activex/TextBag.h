#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <oleauto.h>

#include <map>
#include <string>
#include <vector>

namespace kw::test {

// A host's bag that keeps everything as text, as a form file does, and records the keys.
class TextBag final : public IPropertyBag {
public:
  std::map<std::wstring, std::wstring> values;
  std::vector<std::wstring> read;
  std::vector<std::wstring> written;
  HRESULT writeResult = S_OK;

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR key, VARIANT* value, IErrorLog* /*log*/) override {
    EXPECT_NE(key, nullptr);
    if (key == nullptr) return E_POINTER;
    read.emplace_back(key);
    const auto found = values.find(key);
    if (found == values.end()) return E_INVALIDARG;
    V_VT(value) = VT_BSTR;
    V_BSTR(value) = SysAllocString(found->second.c_str());
    return S_OK;
  }
  STDMETHODIMP Write(LPCOLESTR key, VARIANT* value) override {
    EXPECT_NE(key, nullptr);
    if (key == nullptr) return E_POINTER;
    written.emplace_back(key);
    VARIANT text;
    VariantInit(&text);
    EXPECT_HRESULT_SUCCEEDED(VariantChangeTypeEx(&text, value, LOCALE_INVARIANT, VARIANT_ALPHABOOL, VT_BSTR));
    values[key] = std::wstring(V_BSTR(&text), SysStringLen(V_BSTR(&text)));
    VariantClear(&text);
    return writeResult;
  }
};

}  // namespace kw::test
