#pragma once

#include <string>
#include <string_view>

namespace kw {

// Conversions between the editor's UTF-8 and the platform's UTF-16. A lone surrogate, which file names on Windows may
// hold, survives the round trip (it is written as its own three bytes); bytes that are no UTF-8 become U+FFFD.
std::u16string Utf16FromUtf8(std::string_view text);
std::string Utf8FromUtf16(std::u16string_view text);

}  // namespace kw
