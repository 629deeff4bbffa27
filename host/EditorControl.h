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
  // Makes the control, as a child of the container's window. If the file `settings` is there, the control's properties
  // are loaded from it; an empty path is for a control that is not kept. Throws ControlError.
  EditorControl(Container& owner, std::wstring settings);
  ~EditorControl();
  EditorControl(const EditorControl&) = delete;
  EditorControl& operator=(const EditorControl&) = delete;

  // Methods and properties.
  _KwEditorLayers& Members() const { return *editor.Get(); }
  std::vector<Property> Properties() const;

  // Whether the properties come from the file of settings.
  bool IsLoaded() const { return isLoaded; }
  // Keeps the properties in that file, if one of them has changed; S_FALSE if there was nothing to do.
  HRESULT SaveIfDirty() const;

  // While it lives, the control raises no events. What the container sets many properties under comes as one notice of
  // each changed property, at the end.
  class FrozenEvents {
  public:
    explicit FrozenEvents(const EditorControl& control);
    ~FrozenEvents();
    FrozenEvents(const FrozenEvents&) = delete;
    FrozenEvents& operator=(const FrozenEvents&) = delete;

  private:
    Microsoft::WRL::ComPtr<IOleControl> frozen;
  };

  // Tells the control the names that belong into the titles of its windows.
  void SetHostNames(const std::wstring& document) const;
  // Passes a message on that the system sends to top-level windows only: other colours, settings, themes.
  void SystemChanged(UINT message, WPARAM wParam, LPARAM lParam) const;

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
  HRESULT Save() const;
  void LoadOrInitialise();
  void ConnectSinks();

  Container& container;
  std::wstring settingsFile;
  bool isLoaded = false;
  Microsoft::WRL::ComPtr<_KwEditorLayers> editor;
  Microsoft::WRL::ComPtr<IOleObject> object;
  Microsoft::WRL::ComPtr<IOleInPlaceObject> place;
  Microsoft::WRL::ComPtr<ControlFrame> frame;
  Microsoft::WRL::ComPtr<ControlSite> site;
  std::optional<Connection> events;
  std::optional<Connection> properties;
};

}  // namespace kw::host
