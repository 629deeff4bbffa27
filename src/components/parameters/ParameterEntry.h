#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/base/Parameter.h"

namespace kw {

// The user's entries so far in a dialog that asks for parameters: a value for each field, or none while the text
// of a field is no number that it allows. A field is typed into, stepped by a spin button or dragged by a slider; a
// field with choices is a list.
class ParameterEntry {
public:
  // The fields must outlive the entry; `start` holds an allowed value for each.
  ParameterEntry(std::span<const Parameter> askedFor, std::span<const double> start, std::string decimalSeparator);

  std::size_t Count() const { return fields.size(); }
  const Parameter& Field(std::size_t i) const { return fields[i]; }
  bool IsChoice(std::size_t i) const { return !fields[i].choices.empty(); }

  // The value as the field shows it; 0 if there is none.
  std::string Text(std::size_t i) const;
  // The list's entry, from 0.
  std::size_t Choice(std::size_t i) const;
  // The slider's last position; the first one is 0.
  std::int32_t LastPosition(std::size_t i) const;
  // The slider's position; empty while there is no value.
  std::optional<std::int32_t> Position(std::size_t i) const;
  // The field's range in a line.
  std::string Range(std::size_t i) const;

  // The user's actions. A field whose text is not allowed loses its value.
  void Type(std::size_t i, std::string_view text);
  // Adds steps to the value, within the range; a field without a value gets the standard one.
  void Step(std::size_t i, int steps);
  void SlideTo(std::size_t i, std::int32_t position);
  // Ignores an entry that the list does not have.
  void Choose(std::size_t i, std::size_t choice);
  void SetDefaults();

  // The first field without a value.
  std::optional<std::size_t> FirstInvalid() const;
  // All values; empty while one is missing.
  std::optional<std::vector<double>> Values() const;

  // Called if an action gave a field another value.
  void OnChange(std::function<void()> handler) { changed = std::move(handler); }

private:
  void Set(std::size_t i, double value);

  std::span<const Parameter> fields;
  std::vector<std::optional<double>> values;
  std::string separator;
  std::function<void()> changed;
};

}  // namespace kw
