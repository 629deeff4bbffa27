#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kw::test {

// While it lives the test source is installed for the system's source manager; it starts without orders.
class TestScanner {
public:
  TestScanner();
  TestScanner(const TestScanner&) = delete;
  TestScanner& operator=(const TestScanner&) = delete;
  ~TestScanner();

  const std::wstring& DriverFile() const { return driver; }
  // What the source is to do; see twain/TestSource.cpp.
  static void Order(const std::string& name, const std::string& value);
  // What the source was asked since the last call.
  static std::string Trace();

private:
  std::wstring driver;
};

void EmptyTheClipboard();
// The device-independent bitmap on the clipboard; empty without one.
std::vector<std::uint8_t> BytesOnTheClipboard();

SIZE SizeOfDib(const std::vector<std::uint8_t>& dib);
// The colours of a part of it, as the system draws it, row by row.
std::vector<COLORREF> PixelsOfDib(const std::vector<std::uint8_t>& dib, const RECT& part);

}  // namespace kw::test
