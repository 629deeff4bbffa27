#include "components/parameters/ParameterText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include "components/base/Texts.h"

namespace kw {
namespace {

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
char Small(char c) { return IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
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
    std::string label = TranslatedIfOwn(LabelOf(field.name));
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

std::string NumberText(double value, std::string_view separator) {
  constexpr double ExactWholeNumbers = 9007199254740992;  // up to 2 to the power of 53
  constexpr std::int64_t Thousand = 1000;
  std::array<char, 512> digits = {};  // the largest double has 309
  const double rounded = std::round(value * Thousand);
  if (!(std::abs(rounded) < ExactWholeNumbers)) {
    const int length = std::snprintf(digits.data(), digits.size(), "%.0f", value);
    return {digits.data(), static_cast<std::size_t>(length)};
  }
  // Made of whole numbers, since the standard library's way needs tables of 100 KiB.
  const auto thousandths = static_cast<std::int64_t>(std::abs(rounded));
  std::string text = (rounded < 0 ? "-" : "") + std::to_string(thousandths / Thousand);
  std::string places = std::to_string(Thousand + thousandths % Thousand);
  while (places.ends_with('0')) places.pop_back();
  if (places.size() > 1) text.append(separator).append(places, 1);
  return text;
}

std::optional<double> NumberOf(std::string_view text, const Parameter& field, std::string_view separator) {
  std::string digits(Trimmed(text));
  if (const auto at = digits.find(separator); !separator.empty() && at != std::string::npos)
    digits.replace(at, separator.size(), ".");
  std::ranges::replace(digits, ',', '.');
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.erase(0, 1);
  double value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [next, error] = std::from_chars(digits.data(), end, value, std::chars_format::fixed);
  if (error != std::errc() || next != end) return std::nullopt;
  // The text may say "nan", for which every comparison is false.
  if (!(value >= field.least && value <= field.greatest)) return std::nullopt;
  if (field.whole && std::floor(value) != value) return std::nullopt;
  return value;
}

std::string RangeText(const Parameter& field, std::string_view separator) {
  const auto number = [&](double value) { return NumberText(value, separator); };
  const std::string label = TranslatedIfOwn(LabelOf(field.name));
  if (!field.choices.empty()) {
    const std::string_view standard = field.choices[static_cast<std::size_t>(field.standard - field.least)];
    return Filled(Translated("{1}: default {2}"), {label, TranslatedIfOwn(standard)});
  }
  std::string meaning;
  if (!field.unit.empty()) meaning = " " + TranslatedIfOwn(field.unit);
  if (!field.zero.empty()) meaning += Filled(Translated("; 0: {1}"), {TranslatedIfOwn(field.zero)});
  return Filled(Translated("{1}: {2} to {3}{4}; default {5}"),
                {label, number(field.least), number(field.greatest), meaning, number(field.standard)});
}

}  // namespace kw
