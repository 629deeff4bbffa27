#pragma once

#include <wrl/client.h>

#include <optional>
#include <string>
#include <vector>

#include "Automation.h"
#include "Container.h"
#include "ControlSite.h"
#include "Sinks.h"
#include "activex/KwEditor.h"

namespace kw::host {

// The control cannot be made or placed; the message says why.
struct ControlError {
  std::wstring message;
};

// The control in its container, from creation to the end, in the order of calls that OLE asks for.
class EditorControl {
public:
  // Makes the control, as a child of the container's window. Throws ControlError.
  explicit EditorControl(Container& owner);
  ~EditorControl();
  EditorControl(const EditorControl&) = delete;
  EditorControl& operator=(const EditorControl&) = delete;

  // Methods and properties.
  _KwEditorLayers& Members() const { return *editor.Get(); }
  std::vector<Property> Properties() const;

  // The control's own commands for a menu of the container.
  struct Verb {
    LONG number;
    std::wstring menuText;
    UINT menuFlags;
  };
  std::vector<Verb> Verbs() const;
  // S_OK, or why the verb did not run; the control refuses one that it cannot run now.
  HRESULT RunVerb(LONG number) const;

  // Follows the container's area.
  void Move() const;
  // Gives the keyboard to the control, or takes note that something else in the window has it.
  void ActivateUi() const;
  void DeactivateUi() const;
  // Offers a keyboard message of the control's windows to the control; true when it is dealt with.
  bool TranslateAccelerator(MSG& message) const;

private:
  Container& container;
  Microsoft::WRL::ComPtr<_KwEditorLayers> editor;
  Microsoft::WRL::ComPtr<IOleObject> object;
  Microsoft::WRL::ComPtr<IOleInPlaceObject> place;
  Microsoft::WRL::ComPtr<ControlFrame> frame;
  Microsoft::WRL::ComPtr<ControlSite> site;
  std::optional<Connection> events;
  std::optional<Connection> properties;
};

}  // namespace kw::host
