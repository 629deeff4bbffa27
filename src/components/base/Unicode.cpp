#include "components/base/Unicode.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kw {
namespace {

constexpr char32_t Replacement = 0xFFFD;

struct Decoded {
  char32_t code;
  std::size_t length;
};

Decoded DecodeOne(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  std::size_t length = 0;
  if (lead >= 0xC2 && lead < 0xE0)
    length = 2;
  else if (lead >= 0xE0 && lead < 0xF0)
    length = 3;
  else if (lead >= 0xF0 && lead < 0xF5)
    length = 4;
  else
    return {Replacement, 1};
  if (text.size() < length) return {Replacement, 1};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return {Replacement, 1};
    code = (code << 6U) | (byte(i) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  if (code < smallest[length] || code > 0x10FFFF) return {Replacement, 1};
  return {code, length};
}

bool IsHighSurrogate(char32_t code) { return code >= 0xD800 && code < 0xDC00; }
bool IsLowSurrogate(char32_t code) { return code >= 0xDC00 && code < 0xE000; }

void Append(std::string& out, char32_t code) {
  const auto tail = [&](unsigned shift) { out.push_back(static_cast<char>(0x80U | ((code >> shift) & 0x3FU))); };
  if (code < 0x80) {
    out.push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    out.push_back(static_cast<char>(0xC0U | (code >> 6U)));
    tail(0);
  } else if (code < 0x10000) {
    out.push_back(static_cast<char>(0xE0U | (code >> 12U)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0U | (code >> 18U)));
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

std::u16string Utf16FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto [code, length] = DecodeOne(text);
    text.remove_prefix(length);
    if (code < 0x10000) {
      out.push_back(static_cast<char16_t>(code));
    } else {
      out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10U)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FFU)));
    }
  }
  return out;
}

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      code = 0x10000 + ((code - 0xD800) << 10U) + (text[++i] - 0xDC00U);
    }
    Append(out, code);
  }
  return out;
}

}  // namespace kw
