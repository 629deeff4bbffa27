#include "activex/Text.h"

#include <new>

#include "components/base/Unicode.h"

namespace kw::activex {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the platform's wide text is UTF-16");

std::string FromWide(const wchar_t* text, std::size_t length) {
  return Utf8FromUtf16(std::u16string(text, text + length));
}

std::string FromBstr(BSTR text) { return text == nullptr ? std::string() : FromWide(text, SysStringLen(text)); }

Bstr::Bstr(const std::string& text) {
  const std::u16string wide = Utf16FromUtf8(text);
  value = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(wide.data()), static_cast<UINT>(wide.size()));
  if (value == nullptr) throw std::bad_alloc();
}

}  // namespace kw::activex
