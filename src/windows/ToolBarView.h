#pragma once

#include <vector>

#include "components/ToolBar.h"
#include "windows/ControlView.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

class ToolBarView final : public ControlView {
public:
  ToolBarView(Pane& shared, ToolBar& shown, ControlView* container)
      : ControlView(shared, shown, container), bar(shown) {}

  static void Draw(const Look& look, const RECT& place, const ToolBar& bar);

  void OnCommand(WORD notification, WORD id) override;
  void Rescale() override;
  LRESULT OnNotify(NMHDR& header) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void ShowPlace() override;
  void ShowEnabled() override;
  void SetSizes(HWND shown) const;
  void ShowButtons();
  std::vector<BYTE> States(const std::vector<RECT>& places) const;
  void AddButtons(const std::vector<RECT>& places, const std::vector<BYTE>& states);

  void Click(WORD id);
  // Which buttons the system shows pressed.
  void ReadChecks();

  ToolBar& bar;
  std::vector<BYTE> shownStates;
  int messagesUnderWay = 0;
  WORD clicked = 0;  // the button that waits; 0: none
};

}  // namespace kw::windows
