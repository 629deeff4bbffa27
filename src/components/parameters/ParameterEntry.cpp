#include "components/parameters/ParameterEntry.h"

#include <algorithm>
#include <cmath>

#include "components/parameters/ParameterText.h"

namespace kw {
namespace {

// A field steps by 1 if its range is wider than this.
constexpr double NarrowRange = 60;

double StepOf(const Parameter& field) { return field.whole || field.greatest - field.least > NarrowRange ? 1 : 0.1; }

// Without the rounding errors of sums of 0.1.
double Rounded(double value) { return std::round(value * 1000) / 1000; }

std::int32_t PositionOf(const Parameter& field, double value) {
  return static_cast<std::int32_t>(std::lround((value - field.least) / StepOf(field)));
}

}  // namespace

ParameterEntry::ParameterEntry(std::span<const Parameter> askedFor, std::span<const double> start,
                               std::string decimalSeparator)
    : fields(askedFor), values(start.begin(), start.end()), separator(std::move(decimalSeparator)) {}

std::string ParameterEntry::Text(std::size_t i) const { return NumberText(values[i].value_or(0), separator); }

std::size_t ParameterEntry::Choice(std::size_t i) const {
  return static_cast<std::size_t>(values[i].value_or(fields[i].least) - fields[i].least);
}

std::int32_t ParameterEntry::LastPosition(std::size_t i) const { return PositionOf(fields[i], fields[i].greatest); }

std::optional<std::int32_t> ParameterEntry::Position(std::size_t i) const {
  if (!values[i]) return std::nullopt;
  return PositionOf(fields[i], *values[i]);
}

std::string ParameterEntry::Range(std::size_t i) const { return RangeText(fields[i], separator); }

void ParameterEntry::Type(std::size_t i, std::string_view text) {
  const std::optional<double> value = NumberOf(text, fields[i], separator);
  if (value)
    Set(i, *value);
  else
    values[i].reset();
}

void ParameterEntry::Step(std::size_t i, int steps) {
  const Parameter& field = fields[i];
  const double next = values[i] ? *values[i] + steps * StepOf(field) : field.standard;
  Set(i, std::clamp(Rounded(next), field.least, field.greatest));
}

void ParameterEntry::SlideTo(std::size_t i, std::int32_t position) {
  const Parameter& field = fields[i];
  Set(i, std::clamp(Rounded(field.least + position * StepOf(field)), field.least, field.greatest));
}

void ParameterEntry::Choose(std::size_t i, std::size_t choice) {
  if (choice < fields[i].choices.size()) Set(i, fields[i].least + static_cast<double>(choice));
}

void ParameterEntry::SetDefaults() {
  for (std::size_t i = 0; i < fields.size(); ++i) Set(i, fields[i].standard);
}

std::optional<std::size_t> ParameterEntry::FirstInvalid() const {
  const auto missing = std::ranges::find_if(values, [](const auto& value) { return !value.has_value(); });
  if (missing == values.end()) return std::nullopt;
  return static_cast<std::size_t>(missing - values.begin());
}

std::optional<std::vector<double>> ParameterEntry::Values() const {
  std::vector<double> all;
  for (const std::optional<double>& value : values) {
    if (!value) return std::nullopt;
    all.push_back(*value);
  }
  return all;
}

void ParameterEntry::Set(std::size_t i, double value) {
  if (values[i] == value) return;
  values[i] = value;
  if (changed) changed();
}

}  // namespace kw
