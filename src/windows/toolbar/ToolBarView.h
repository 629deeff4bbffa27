#pragma once

#include <optional>
#include <vector>

#include "components/controls/ToolBar.h"
#include "windows/toolbar/BarLayout.h"
#include "windows/toolbar/BarRows.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"

namespace kw::windows {

// A tool bar. A button's id is its position in the model's list, from 1; the last one is the overflow button, if
// buttons do not fit.
class ToolBarView final : public ControlView {
public:
  // The rows must outlive the view.
  ToolBarView(ViewTree& shared, ToolBar& shown, ControlView* container, BarRows& fellows);
  ~ToolBarView() override;

  static void Draw(const Look& look, const RECT& bounds, const ToolBar& bar);

  bool IsTabStop() const override;
  bool WantsKey(WPARAM key) const override;
  void OnCommand(WORD notification, WORD id) override;
  void Complete() override;
  void Rescale() override;
  LRESULT OnNotify(NMHDR& header) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  BarSizes Sizes() const;
  void SetRoom(const BarRoom& newRoom);

private:
  struct MenuEntry {
    ToolBarView* bar;
    std::size_t button;
  };

  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void Fit() override;
  void ShowEnabled() override;
  void SetSizes(HWND shown) const;
  void ShowButtons();
  std::vector<BYTE> States(const BarLayout& layout) const;
  void AddButtons(const BarLayout& layout, const std::vector<BYTE>& states);
  TBBUTTON SystemButton(std::size_t index, BYTE state, std::wstring& name) const;
  LRESULT DrawButton(const NMTBCUSTOMDRAW& drawing) const;
  // The button of the model, or behind them the one that opens the overflow menu.
  ToolBar::Button ButtonAt(std::size_t index) const;

  // Runs what had to wait until the system's code for the message returned.
  void FinishMessage(UINT message);
  void Click(WORD id);
  void Choose(std::size_t button);
  // Reads from the window which buttons are pressed.
  void ReadChecks();

  std::vector<MenuEntry> EntriesOfRest();
  void PopUpRest();

  // Keyboard use, in ToolBarKeys.cpp. The button with the focus is the system's hot item.
  bool TakesKeys(std::size_t index) const;
  RECT ButtonBounds(std::size_t index) const;
  int HotButton() const;
  void SetHotButton(std::optional<std::size_t> index);
  std::optional<std::size_t> Next(int from, int step) const;
  std::optional<std::size_t> Beside(std::size_t from, bool isBelow) const;
  bool OnKey(WPARAM key);
  bool OnCharacter(WPARAM character, LPARAM details);

  ToolBar& bar;
  BarRows& rows;
  BarRoom room;
  std::vector<BYTE> shownStates;
  bool isComplete = false;
  int messagesUnderWay = 0;
  WORD clicked = 0;  // the clicked button that waits; 0: none
  std::size_t lastKeyed = 0;
};

}  // namespace kw::windows
