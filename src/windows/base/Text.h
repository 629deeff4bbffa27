#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "components/base/Unicode.h"

namespace kw::windows {

// Conversions between UTF-8 and the text of the system's wide functions.
inline std::wstring ToWide(std::string_view text) {
  const std::u16string utf16 = Utf16FromUtf8(text);
  return {utf16.begin(), utf16.end()};
}

inline std::string FromWide(std::wstring_view text) { return Utf8FromUtf16(std::u16string(text.begin(), text.end())); }

// All of a window's text.
inline std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace kw::windows
