// Design mode: what the control does while its container designs the form on which it lies.

#include <utility>
#include <variant>

#include "components/base/CopyOf.h"
#include "control/KwEditorLayers.h"
#include "trap/Procedure.h"

namespace kw {

void KwEditorLayers::BeginDesign() {
  trap.Rest(true);
  form.HoldTimers(true);
  if (!isInitialised) ShowDesign();
}

// Start-up finds what a new control has.
void KwEditorLayers::EndDesign() {
  if (!isInitialised) {
    SetStartUpValues();
    form.tmrWatchClipBoard.SetEnabled(false);
    form.tmrDefaultToolsSelection.SetEnabled(false);
  }
  const auto changed = designed.find(PropertyId::IsFileChanged);
  if (changed != designed.end()) changed->second = m_IsFileChanged;  // the host may have set the variable later
  trap.Rest(false);
  form.HoldTimers(false);
}

// What start-up reads, adds to, or changes with an event.
void KwEditorLayers::SetStartUpValues() {
  form.editor.SetEnabled(true);
  form.cmbZoomFactor.Clear();
  form.sldLineHeight.SetValue(form.sldLineHeight.Min());
  m_IsEditable = true;
  m_IsSaveButtonEnabled = true;
}

// Shows the control as it would be with the kept values. The tool box and the buttons depend on the order in which the
// values are assigned, so all of them are assigned again.
void KwEditorLayers::ShowDesign() {
  Procedure run(trap);
  if (!isInitialised) {
    SetStartUpValues();
    RunStartUpSteps(run);
  }
  LetEach(designed);
}

void KwEditorLayers::Design(PropertyId property, const PropertyValue& value) {
  KeepDesigned(property, value);
  ShowDesign();
  context.events.PropertyChanged(property);
}

void KwEditorLayers::KeepDesigned(PropertyId property, const PropertyValue& value) {
  const bool isLevels = property == PropertyId::MaxUndoLevels;
  PropertyValue kept = isLevels ? UndoLevelsOf(std::get<std::int16_t>(value)) : CopyOf(value);
  designed[property] = std::move(kept);
}

KwEditorLayers::PropertyValue KwEditorLayers::Designed(PropertyId property, const PropertyValue& present) const {
  const auto found = designed.find(property);
  return CopyOf(found == designed.end() || !IsPersisted(property) ? present : found->second);
}

void KwEditorLayers::LetDesigned() { LetEach(std::exchange(designed, {})); }

}  // namespace kw
