#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace kw::activex {

std::string FromWide(const wchar_t* text, std::size_t length);
// A null pointer is an empty text.
std::string FromBstr(BSTR text);

// An owned BSTR. Where there is no memory for it, it is null.
class Bstr {
public:
  Bstr() = default;
  explicit Bstr(const std::string& text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(value); }

  BSTR Get() const { return value; }
  // For a callee that may replace the text, as a by-reference argument of an event.
  BSTR* Address() { return &value; }
  // Hands the ownership over.
  BSTR Detach() noexcept {
    const BSTR detached = value;
    value = nullptr;
    return detached;
  }

private:
  BSTR value = nullptr;
};

}  // namespace kw::activex
