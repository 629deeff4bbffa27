#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

#include "Automation.h"

namespace kw::host {

// A window with one row for each property of an automation object: a check box for a Boolean, otherwise a field whose
// text is set with Enter. A row shows what the object says, not what was typed.
class PropertyPanel {
public:
  struct Callbacks {
    std::function<void(const std::wstring&)> failed;  // a value was refused
    std::function<void()> focused;                    // a row got the keyboard
    std::function<void(bool backwards)> leave;        // Tab went past the last row, or back past the first
  };

  PropertyPanel(HWND parent, IDispatch& described, const std::vector<Property>& properties, Callbacks callbacks);

  HWND Window() const { return panel; }
  // Sets the rows out for a font and a scale; gives the size that shows all of them.
  SIZE Arrange(HFONT font, int dpi);
  // Shows the present values.
  void Refresh();
  void Focus(bool onLastRow) const;
  // Deals with Tab, Enter and Escape in the rows; true when the message needs nothing more.
  bool TranslateMessage(MSG& message) const;

private:
  struct Row {
    Property property;
    HWND label = nullptr;  // null for a check box, which has its own
    HWND control = nullptr;

    bool IsSwitch() const { return property.type == VT_BOOL; }
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  void CreateTips();
  void AddRow(const Property& property);
  void AddTip(const Row& row);
  LRESULT OnCommand(int id, int notification);
  void Apply(const Row& row);
  Row* FocusedRow();

  Microsoft::WRL::ComPtr<IDispatch> object;
  Callbacks told;
  std::vector<Row> rows;
  HWND panel = nullptr;
  HWND tips = nullptr;
  HWND hint = nullptr;
};

}  // namespace kw::host
