#pragma once

#include <windows.h>

#include <objidl.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "tests/activex/Ocx.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {

inline FORMATETC FormatOf(CLIPFORMAT id, DWORD medium) { return {id, nullptr, DVASPECT_CONTENT, -1, medium}; }

// What a data object gave, freed with it.
struct Given : STGMEDIUM {
  Given() : STGMEDIUM{} {}
  Given(const Given&) = delete;
  Given& operator=(const Given&) = delete;
  ~Given() { ReleaseStgMedium(this); }
};

// A picture's colours from the top left on, and the head of the bitmap that they came in.
struct GivenPicture {
  BITMAPV5HEADER head = {};
  int width = 0;
  int height = 0;
  std::vector<COLORREF> pixels;

  COLORREF At(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

// Reads a packed bitmap of 24 bits with a head of 40 or 124 bytes.
inline GivenPicture PictureOf(HGLOBAL block) {
  GivenPicture picture;
  const auto* const bytes = static_cast<const BYTE*>(GlobalLock(block));
  DWORD headBytes = 0;
  std::memcpy(&headBytes, bytes, sizeof headBytes);
  EXPECT_TRUE(headBytes == sizeof(BITMAPINFOHEADER) || headBytes == sizeof(BITMAPV5HEADER)) << headBytes;
  std::memcpy(&picture.head, bytes, headBytes);
  EXPECT_EQ(picture.head.bV5BitCount, 24);
  EXPECT_EQ(picture.head.bV5Compression, static_cast<DWORD>(BI_RGB));
  picture.width = picture.head.bV5Width;
  picture.height = picture.head.bV5Height;
  const std::size_t stride = (static_cast<std::size_t>(picture.width) * 3 + 3) / 4 * 4;
  EXPECT_GE(GlobalSize(block), headBytes + stride * static_cast<std::size_t>(picture.height));
  EXPECT_EQ(picture.head.bV5SizeImage, stride * static_cast<std::size_t>(picture.height));
  for (int y = 0; y < picture.height; ++y) {
    const BYTE* const row = bytes + headBytes + stride * static_cast<std::size_t>(picture.height - 1 - y);
    for (int x = 0; x < picture.width; ++x) {
      const BYTE* const pixel = row + std::ptrdiff_t{3} * x;
      picture.pixels.push_back(RGB(pixel[2], pixel[1], pixel[0]));
    }
  }
  GlobalUnlock(block);
  return picture;
}

inline GivenPicture DibOf(IDataObject& data, CLIPFORMAT id = CF_DIB) {
  FORMATETC format = FormatOf(id, TYMED_HGLOBAL);
  Given given;
  const HRESULT result = data.GetData(&format, &given);
  EXPECT_EQ(result, S_OK);
  return result == S_OK ? PictureOf(given.hGlobal) : GivenPicture();
}

// Takes notices and does nothing with them.
class QuietAdviseSink final : public IAdviseSink {
public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IAdviseSink ? this : nullptr;
    return *object == nullptr ? E_NOINTERFACE : S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP_(void) OnDataChange(FORMATETC* /*format*/, STGMEDIUM* /*medium*/) override {}
  STDMETHODIMP_(void) OnViewChange(DWORD /*aspect*/, LONG /*index*/) override {}
  STDMETHODIMP_(void) OnRename(IMoniker* /*moniker*/) override {}
  STDMETHODIMP_(void) OnSave() override {}
  STDMETHODIMP_(void) OnClose() override {}
};

inline void OpenDocument(_KwEditorLayers& control, const std::wstring& path) {
  const BoxAnswerer user({Once(ListOfPendingWork)});
  ASSERT_EQ(control.OpenFile(Text(path)), S_OK);
}

}  // namespace kw::test
