#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "members/Members.h"

namespace kw::windows {

using PropertyValue = std::variant<types::Boolean, types::Integer, types::Text>;

// What the property page shows for each of its fields, whether or not it has a window: the value of the objects until
// the user enters another one, then that until it is applied.
class PropertyEntries {
public:
  PropertyEntries();

  // The value that all objects have; empty if they differ or do not tell. What the user entered stays, and so does a
  // value that was known before.
  void Show(std::size_t field, const std::optional<PropertyValue>& value);
  void Tick(std::size_t field, bool ticked);
  void Type(std::size_t field, const std::string& text);

  bool IsChanged(std::size_t field) const { return entries[field].isChanged; }
  bool HasChanges() const;
  // What was entered has become the objects' value.
  void Keep(std::size_t field) { entries[field].isChanged = false; }

  // Of a switch; empty if nobody knows.
  std::optional<bool> IsTicked(std::size_t field) const { return entries[field].tick; }
  const std::string& Text(std::size_t field) const { return entries[field].text; }
  // The value for the objects; empty if the property cannot have it.
  std::optional<PropertyValue> Value(std::size_t field) const;

private:
  struct Entry {
    std::optional<bool> tick;
    std::string text;
    bool isChanged = false;
  };

  std::vector<Entry> entries;
};

}  // namespace kw::windows
