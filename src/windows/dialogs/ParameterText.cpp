#include "windows/dialogs/ParameterText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "windows/base/Text.h"

namespace kw::windows {
namespace {

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
char Small(char c) { return IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c; }

wchar_t DecimalSeparator() {
  std::array<wchar_t, 4> text = {};
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(), static_cast<int>(text.size()));
  return length == 2 ? text[0] : L'.';
}

std::wstring_view Trimmed(std::wstring_view text) {
  while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
  return text;
}

}  // namespace

std::string LabelOf(std::string_view name) {
  std::string label;
  for (const char c : name) {
    if (!label.empty() && IsCapital(c)) label += ' ';
    label += label.empty() ? c : Small(c);
  }
  return label;
}

std::vector<std::string> WithMnemonics(std::span<const Parameter> fields, std::string_view taken) {
  std::string used(taken);
  std::vector<std::string> labels;
  for (const Parameter& field : fields) {
    std::string label = LabelOf(field.name);
    const auto isFree = [&](char c) { return c != ' ' && used.find(Small(c)) == std::string::npos; };
    const auto letter = std::ranges::find_if(label, isFree);
    if (letter != label.end()) {
      used += Small(*letter);
      label.insert(letter, '&');
    }
    labels.push_back(label);
  }
  return labels;
}

std::wstring NumberText(double value) {
  std::array<char, 64> digits = {};
  const double rounded = std::round(value * 1000) / 1000;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), rounded, std::chars_format::fixed);
  std::wstring text(digits.data(), result.ptr);
  std::ranges::replace(text, L'.', DecimalSeparator());
  return text;
}

std::optional<double> NumberOf(const std::wstring& text, const Parameter& field) {
  std::string digits;
  for (const wchar_t c : Trimmed(text)) {
    if (c > L'~') return std::nullopt;
    digits += c == L',' ? '.' : static_cast<char>(c);
  }
  if (digits.starts_with('+')) digits.erase(0, 1);
  double value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [next, error] = std::from_chars(digits.data(), end, value, std::chars_format::fixed);
  if (error != std::errc() || next != end) return std::nullopt;
  // What is no number (the text may say so) compares false.
  if (!(value >= field.least && value <= field.greatest)) return std::nullopt;
  if (field.whole && std::floor(value) != value) return std::nullopt;
  return value;
}

std::wstring RangeText(const Parameter& field) {
  const std::wstring unit = field.unit.empty() ? L"" : L" " + ToWide(field.unit);
  std::wstring text = ToWide(LabelOf(field.name)) + L": ";
  if (!field.choices.empty()) {
    return text + L"default " + ToWide(field.choices[static_cast<std::size_t>(field.standard - field.least)]);
  }
  text += NumberText(field.least) + L" to " + NumberText(field.greatest) + unit;
  if (!field.zero.empty()) text += L"; 0: " + ToWide(field.zero);
  return text + L"; default " + NumberText(field.standard);
}

double StepOf(const Parameter& field) { return field.whole || field.greatest - field.least > 60 ? 1 : 0.1; }

}  // namespace kw::windows
