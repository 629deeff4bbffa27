#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace kw::activex {

std::string FromWide(const wchar_t* text, std::size_t length);
// A null pointer counts as an empty text.
std::string FromBstr(BSTR text);

// An owned BSTR.
class Bstr {
public:
  Bstr() = default;
  // Throws std::bad_alloc: null would count as an empty text.
  explicit Bstr(const std::string& text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(value); }

  BSTR Get() const { return value; }
  // For a callee that may replace the text: a by-reference argument of an event.
  BSTR* Address() { return &value; }
  // Passes the ownership to the caller.
  BSTR Detach() noexcept {
    const BSTR detached = value;
    value = nullptr;
    return detached;
  }

private:
  BSTR value = nullptr;
};

}  // namespace kw::activex
