#include "tests/support/programs/twain/TestScanner.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kw::test {
namespace {

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.rfind(L'\\')); }

}  // namespace

TestScanner::TestScanner() {
  wchar_t windows[MAX_PATH] = {};
  GetWindowsDirectoryW(static_cast<wchar_t*>(windows), MAX_PATH);
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, static_cast<wchar_t*>(program), MAX_PATH);
  const std::wstring folder =
      static_cast<const wchar_t*>(windows) + std::wstring(sizeof(void*) == 8 ? L"\\twain_64" : L"\\twain_32");
  CreateDirectoryW(folder.c_str(), nullptr);
  driver = folder + L"\\sane.ds";  // a name that the manager looks for
  const std::wstring source = FolderOf(static_cast<const wchar_t*>(program)) + L"\\TestSource.ds";
  EXPECT_TRUE(CopyFileW(source.c_str(), driver.c_str(), FALSE)) << GetLastError();
  for (const char* name : {"PAGES", "DEPTH", "FAILS"}) Order(name, "");
  Trace();
}

// The manager leaves the drivers that it found in memory.
TestScanner::~TestScanner() {
  for (int i = 0; i < 10; ++i) {
    const HMODULE loaded = GetModuleHandleW(driver.c_str());
    if (loaded == nullptr) break;
    FreeLibrary(loaded);
  }
  EXPECT_TRUE(DeleteFileW(driver.c_str())) << GetLastError();
}

void TestScanner::Order(const std::string& name, const std::string& value) {
  SetEnvironmentVariableA(("KW_SOURCE_" + name).c_str(), value.empty() ? nullptr : value.c_str());
}

std::string TestScanner::Trace() {
  char text[256] = {};
  GetEnvironmentVariableA("KW_SOURCE_TRACE", static_cast<char*>(text), sizeof text);
  SetEnvironmentVariableA("KW_SOURCE_TRACE", nullptr);
  return static_cast<const char*>(text);
}

void EmptyTheClipboard() {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
}

std::vector<std::uint8_t> BytesOnTheClipboard() {
  std::vector<std::uint8_t> bytes;
  if (OpenClipboard(nullptr) == FALSE) return bytes;
  const HANDLE data = GetClipboardData(CF_DIB);
  if (data != nullptr) {
    const auto* const begin = static_cast<const std::uint8_t*>(GlobalLock(data));
    bytes.assign(begin, begin + GlobalSize(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return bytes;
}

SIZE SizeOfDib(const std::vector<std::uint8_t>& dib) {
  const auto* const head = reinterpret_cast<const BITMAPINFOHEADER*>(dib.data());
  return {head->biWidth, std::abs(head->biHeight)};
}

std::vector<COLORREF> PixelsOfDib(const std::vector<std::uint8_t>& dib, const RECT& part) {
  const auto* const info = reinterpret_cast<const BITMAPINFO*>(dib.data());
  const SIZE size = SizeOfDib(dib);
  const DWORD colours = info->bmiHeader.biBitCount <= 8 ? 1U << info->bmiHeader.biBitCount : 0;
  BITMAPINFO plain = {};
  plain.bmiHeader = {sizeof plain.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* rows = nullptr;
  const HDC context = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateDIBSection(context, &plain, DIB_RGB_COLORS, &rows, nullptr, 0);
  const HGDIOBJ before = SelectObject(context, bitmap);
  SetDIBitsToDevice(context, 0, 0, size.cx, size.cy, 0, 0, 0, size.cy,
                    dib.data() + info->bmiHeader.biSize + colours * sizeof(RGBQUAD), info, DIB_RGB_COLORS);
  GdiFlush();
  std::vector<COLORREF> colourOf;
  for (int y = part.top; y < part.bottom; ++y) {
    for (int x = part.left; x < part.right; ++x) {
      const DWORD pixel = static_cast<const DWORD*>(rows)[y * size.cx + x];
      colourOf.push_back(RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel)));
    }
  }
  SelectObject(context, before);
  DeleteObject(bitmap);
  DeleteDC(context);
  return colourOf;
}

}  // namespace kw::test
