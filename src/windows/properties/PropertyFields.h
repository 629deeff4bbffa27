#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "members/Members.h"

namespace kw::windows {

// A property on the property page.
struct PropertyField {
  enum class Kind : unsigned char { Switch, Number, Folder, Picture };

  PropertyId id;
  Kind kind;
  int control;            // the number of its check box or field
  int browse;             // and of the button that looks for a path, 0 for none
  std::string_view name;  // for messages
};

// The properties of the page in the order in which they are applied: the folder and the enabled state first, because
// the others fail without them, then what switches others.
std::span<const PropertyField> PropertyFields();

// Its place in that list; empty if the page does not have it.
std::optional<std::size_t> FieldOf(PropertyId property);

// The numbers that a field of that kind takes.
constexpr int LeastNumber = 5;
constexpr int GreatestNumber = 32767;

}  // namespace kw::windows
