// The properties that the container keeps, each by its row: read in one order and written in another. Design mode keeps
// the same rows, and those of the other properties, until run time.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "control/KwEditorLayers.h"
#include "members/Members.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

using PropertyValue = KwEditorLayers::PropertyValue;

struct KeptProperty {
  PropertyId id;
  int readPlace;
  int writePlace;
  PropertyValue (*load)(PropertyBag& bag);
  void (*save)(PropertyBag& bag, const PropertyValue& value);
  PropertyValue (*get)(KwEditorLayers& control);
  void (*let)(KwEditorLayers& control, const PropertyValue& value);
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
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help)                  \
  {PropertyId::name,                                                                                  \
   readPlace,                                                                                         \
   writePlace,                                                                                        \
   [](PropertyBag& bag) -> PropertyValue { return ReadFrom(bag, #name, types::type{defaultValue}); }, \
   [](PropertyBag& bag, const PropertyValue& value) {                                                 \
     WriteTo(bag, #name, std::get<types::type>(value), types::type{defaultValue});                    \
   },                                                                                                 \
   [](KwEditorLayers& control) -> PropertyValue { return control.Get##name(); },                      \
   [](KwEditorLayers& control, const PropertyValue& value) {                                          \
     Assign<PropertyId::name, &KwEditorLayers::Let##name>(control, std::get<types::type>(value));     \
   }},
#include "members/Members.def"
};

struct OtherProperty {
  PropertyId id;
  void (*let)(KwEditorLayers& control, const PropertyValue& value);
};

constexpr OtherProperty OtherProperties[] = {
#define PROPERTY(name, number, type, help) LET_PROPERTY(name, number, type, help)
#define LET_PROPERTY(name, number, type, help) \
  {PropertyId::name,                           \
   [](KwEditorLayers& control, const PropertyValue& value) { control.Let##name(std::get<types::type>(value)); }},
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help)
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

// The folder belongs to the thread, whose other controls may be at work, and pictures come from files.
bool WaitsForRunTime(PropertyId property) {
  return property == PropertyId::AppDir || property == PropertyId::SignatureFilePath || property == PropertyId::BGImage;
}

}  // namespace

bool KwEditorLayers::IsPersisted(PropertyId property) {
  return std::ranges::find(KeptProperties, property, &KeptProperty::id) != std::end(KeptProperties);
}

void KwEditorLayers::UserControl_ReadProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_ReadProperties");
  if (IsDesigned()) return ReadDesign(bag);
  for (const KeptProperty& property : ReadOrder) {
    run([&] { property.let(*this, property.load(bag)); });
  }
}

bool KwEditorLayers::UserControl_WriteProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_WriteProperties");
  bool isWhole = true;
  for (const KeptProperty& property : WriteOrder) {
    if (run([&] { property.save(bag, Designed(property.id, property.get(*this))); })) continue;
    if (trap.CurrentError().Number() == static_cast<std::int32_t>(ErrorNumber::OutOfMemory)) isWhole = false;
  }
  return isWhole;
}

void KwEditorLayers::ReadDesign(PropertyBag& bag) {
  Procedure run(trap);
  for (const KeptProperty& property : ReadOrder) {
    run([&] { KeepDesigned(property.id, property.load(bag)); });
  }
  ShowDesign();
  for (const KeptProperty& property : ReadOrder) context.events.PropertyChanged(property.id);
}

void KwEditorLayers::LetEach(const std::map<PropertyId, PropertyValue>& values) {
  Procedure run(trap);
  const auto let = [&](const auto& property) {
    const auto found = values.find(property.id);
    if (found == values.end() || (IsDesigned() && WaitsForRunTime(property.id))) return;
    run([&] { property.let(*this, found->second); });
  };
  std::ranges::for_each(ReadOrder, let);
  std::ranges::for_each(OtherProperties, let);
}

}  // namespace kw
