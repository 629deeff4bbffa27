#include "windows/properties/PropertyEntries.h"

#include <algorithm>
#include <charconv>

#include "windows/properties/PropertyFields.h"

namespace kw::windows {

PropertyEntries::PropertyEntries() : entries(PropertyFields().size()) {}

void PropertyEntries::Show(std::size_t field, const std::optional<PropertyValue>& value) {
  Entry& entry = entries[field];
  if (entry.isChanged || !value) return;
  if (const auto* const ticked = std::get_if<types::Boolean>(&*value)) entry.tick = *ticked;
  if (const auto* const number = std::get_if<types::Integer>(&*value)) entry.text = std::to_string(*number);
  if (const auto* const text = std::get_if<types::Text>(&*value)) entry.text = *text;
}

void PropertyEntries::Tick(std::size_t field, bool ticked) {
  entries[field].tick = ticked;
  entries[field].isChanged = true;
}

void PropertyEntries::Type(std::size_t field, const std::string& text) {
  entries[field].text = text;
  entries[field].isChanged = true;
}

bool PropertyEntries::HasChanges() const { return std::ranges::any_of(entries, &Entry::isChanged); }

std::optional<PropertyValue> PropertyEntries::Value(std::size_t field) const {
  const Entry& entry = entries[field];
  switch (PropertyFields()[field].kind) {
    case PropertyField::Kind::Switch:
      return entry.tick ? std::optional<PropertyValue>(*entry.tick) : std::nullopt;
    case PropertyField::Kind::Number: {
      int number = 0;
      const char* const end = entry.text.data() + entry.text.size();
      const auto [read, error] = std::from_chars(entry.text.data(), end, number);
      if (error != std::errc() || read != end || number < LeastNumber || number > GreatestNumber) return std::nullopt;
      return static_cast<types::Integer>(number);
    }
    default:
      return entry.text;
  }
}

}  // namespace kw::windows
