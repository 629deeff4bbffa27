#include "windows/properties/PropertyFields.h"

#include <algorithm>
#include <array>

#include "windows/properties/PropertyPageIds.h"

namespace kw::windows {
namespace {

using Kind = PropertyField::Kind;

constexpr std::array Fields = {
    PropertyField{PropertyId::AppDir, Kind::Folder, PAGE_FOLDER, PAGE_FOLDER_BROWSE, "Working folder"},
    PropertyField{PropertyId::Enabled, Kind::Switch, PAGE_ENABLED, 0, "Enabled"},
    PropertyField{PropertyId::MaxUndoLevels, Kind::Number, PAGE_UNDO_LEVELS, 0, "Undo levels"},
    PropertyField{PropertyId::IsEditable, Kind::Switch, PAGE_EDITABLE, 0, "Page can be edited"},
    PropertyField{PropertyId::IsToolboxVisible, Kind::Switch, PAGE_TOOLBOX, 0, "Tool box shown"},
    PropertyField{PropertyId::IsOpenButtonVisible, Kind::Switch, PAGE_OPEN_BUTTON, 0, "Open button shown"},
    PropertyField{PropertyId::IsSaveButtonEnabled, Kind::Switch, PAGE_SAVE_BUTTON, 0, "Save button enabled"},
    PropertyField{PropertyId::IsToAllowChooseColor, Kind::Switch, PAGE_COLOURS, 0, "Colours can be chosen"},
    PropertyField{PropertyId::IsToSaveAsMultiPageFile, Kind::Switch, PAGE_MULTIPAGE, 0, "Multi-page file"},
    PropertyField{PropertyId::IsToLightenBackImage, Kind::Switch, PAGE_LIGHTENED, 0, "Background lightened"},
    PropertyField{PropertyId::BGImage, Kind::Picture, PAGE_BACKGROUND, PAGE_BACKGROUND_BROWSE, "Background"},
    PropertyField{PropertyId::SignatureFilePath, Kind::Picture, PAGE_SIGNATURE, PAGE_SIGNATURE_BROWSE, "Signature"},
};

}  // namespace

std::span<const PropertyField> PropertyFields() { return Fields; }

std::optional<std::size_t> FieldOf(PropertyId property) {
  const auto* const found = std::ranges::find(Fields, property, &PropertyField::id);
  if (found == Fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - Fields.begin());
}

}  // namespace kw::windows
