// The properties that the container keeps: one table, read in its own order and written in another.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "control/KwEditorLayers.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

template <class Value>
struct Access {
  Value defaultValue;
  Value (KwEditorLayers::*get)();
  void (*let)(KwEditorLayers& control, Value value);
};

struct PersistedProperty {
  const char* key;
  std::variant<Access<bool>, Access<std::int16_t>, Access<std::string>> access;
};

template <auto Member, class Value>
void Let(KwEditorLayers& control, Value value) {
  (control.*Member)(value);
}

template <auto Member>
constexpr auto LetBoolean = &Let<Member, bool>;

using Editor = KwEditorLayers;

// In the order of reading.
const std::array<PersistedProperty, 10>& Table() {
  static const std::array<PersistedProperty, 10> table{{
      {"Enabled", Access<bool>{true, &Editor::GetEnabled, LetBoolean<&Editor::LetEnabled>}},
      {"MaxUndoLevels",
       Access<std::int16_t>{5, &Editor::GetMaxUndoLevels, &Let<&Editor::LetMaxUndoLevels, std::int16_t>}},
      {"IsToolboxVisible", Access<bool>{false, &Editor::GetIsToolboxVisible, LetBoolean<&Editor::LetIsToolboxVisible>}},
      {"IsOpenButtonVisible",
       Access<bool>{false, &Editor::GetIsOpenButtonVisible, LetBoolean<&Editor::LetIsOpenButtonVisible>}},
      {"IsSaveButtonEnabled",
       Access<bool>{true, &Editor::GetIsSaveButtonEnabled, LetBoolean<&Editor::LetIsSaveButtonEnabled>}},
      {"IsEditable", Access<bool>{true, &Editor::GetIsEditable, LetBoolean<&Editor::LetIsEditable>}},
      {"AppDir", Access<std::string>{"", &Editor::GetAppDir,  // stored as it is read, without its Let
                                     [](KwEditorLayers&, std::string value) { AppDir = std::move(value); }}},
      {"IsToAllowChooseColor",
       Access<bool>{false, &Editor::GetIsToAllowChooseColor, LetBoolean<&Editor::LetIsToAllowChooseColor>}},
      {"IsToSaveAsMultiPageFile",
       Access<bool>{false, &Editor::GetIsToSaveAsMultiPageFile, LetBoolean<&Editor::LetIsToSaveAsMultiPageFile>}},
      {"IsToLightenBackImage",
       Access<bool>{false, &Editor::GetIsToLightenBackImage, LetBoolean<&Editor::LetIsToLightenBackImage>}},
  }};
  return table;
}

// The order of writing, as places in the table.
constexpr std::array<std::size_t, 10> WriteOrder{0, 1, 2, 3, 7, 4, 5, 8, 6, 9};

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

}  // namespace

bool KwEditorLayers::IsPersisted(std::string_view property) {
  return std::ranges::any_of(Table(), [&](const PersistedProperty& row) { return row.key == property; });
}

void KwEditorLayers::UserControl_ReadProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_ReadProperties");
  for (const PersistedProperty& property : Table()) {
    run([&] {
      std::visit([&](const auto& of) { of.let(*this, ReadFrom(bag, property.key, of.defaultValue)); }, property.access);
    });
  }
}

void KwEditorLayers::UserControl_WriteProperties(PropertyBag& bag) {
  Procedure run(trap, "UserControl_WriteProperties");
  for (const std::size_t place : WriteOrder) {
    const PersistedProperty& property = Table()[place];
    run([&] {
      std::visit([&](const auto& of) { WriteTo(bag, property.key, (this->*of.get)(), of.defaultValue); },
                 property.access);
    });
  }
}

}  // namespace kw
