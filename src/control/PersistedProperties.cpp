// The properties that the container keeps, each by its row: read in one order and written in another.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "control/KwEditorLayers.h"
#include "members/Members.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

struct KeptProperty {
  PropertyId id;
  int readPlace;
  int writePlace;
  void (*read)(KwEditorLayers& control, PropertyBag& bag);
  void (*write)(KwEditorLayers& control, PropertyBag& bag);
};

bool ReadFrom(PropertyBag& bag, const char* key, bool otherwise) { return bag.ReadBoolean(key, otherwise); }
std::int16_t ReadFrom(PropertyBag& bag, const char* key, std::int16_t otherwise) {
  return bag.ReadInteger(key, otherwise);
}
std::string ReadFrom(PropertyBag& bag, const char* key, const std::string& otherwise) {
  return bag.ReadText(key, otherwise);
}
void WriteTo(PropertyBag& bag, const char* key, bool value, bool otherwise) { bag.WriteBoolean(key, value, otherwise); }
void WriteTo(PropertyBag& bag, const char* key, std::int16_t value, std::int16_t otherwise) {
  bag.WriteInteger(key, value, otherwise);
}
void WriteTo(PropertyBag& bag, const char* key, const std::string& value, const std::string& otherwise) {
  bag.WriteText(key, value, otherwise);
}

template <PropertyId id, auto let, class Value>
void Assign([[maybe_unused]] KwEditorLayers& control, const Value& value) {
  if constexpr (id == PropertyId::AppDir) {
    AppDir = value;  // stored as it is read, without its Let
  } else {
    (control.*let)(value);
  }
}

constexpr KeptProperty KeptProperties[] = {
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help)                                 \
  {PropertyId::name, readPlace, writePlace,                                                                          \
   [](KwEditorLayers& control, PropertyBag& bag) {                                                                   \
     Assign<PropertyId::name, &KwEditorLayers::Let##name>(control, ReadFrom(bag, #name, types::type{defaultValue})); \
   },                                                                                                                \
   [](KwEditorLayers& control, PropertyBag& bag) {                                                                   \
     WriteTo(bag, #name, control.Get##name(), types::type{defaultValue});                                            \
   }},
#include "members/Members.def"
};

consteval auto InOrderOf(int KeptProperty::*place) {
  auto properties = std::to_array(KeptProperties);
  std::ranges::sort(properties, {}, place);
  return properties;
}

constexpr auto ReadOrder = InOrderOf(&KeptProperty::readPlace);
constexpr auto WriteOrder = InOrderOf(&KeptProperty::writePlace);
static_assert(std::ranges::adjacent_find(ReadOrder, {}, &KeptProperty::readPlace) == ReadOrder.end() &&
                  std::ranges::adjacent_find(WriteOrder, {}, &KeptProperty::writePlace) == WriteOrder.end(),
              "two properties have one place in the order of reading or of writing");

}  // namespace

bool KwEditorLayers::IsPersisted(PropertyId property) {
  return std::ranges::find(KeptProperties, property, &KeptProperty::id) != std::end(KeptProperties);
}

void KwEditorLayers::UserControl_ReadProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_ReadProperties");
  for (const KeptProperty& property : ReadOrder) {
    run([&] { property.read(*this, bag); });
  }
}

void KwEditorLayers::UserControl_WriteProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_WriteProperties");
  for (const KeptProperty& property : WriteOrder) {
    run([&] { property.write(*this, bag); });
  }
}

}  // namespace kw
