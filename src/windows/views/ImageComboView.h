#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/controls/ImageCombo.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"
#include "windows/views/NamedWindow.h"

namespace kw::windows {

class ImageComboView final : public ControlView {
public:
  ImageComboView(ViewTree& shared, ImageCombo& shown, ControlView* container)
      : ControlView(shared, shown, container), combo(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const ImageCombo& combo);

  bool IsTabStop() const override { return true; }
  bool WantsKey(WPARAM key) const override;
  void OnCommand(WORD notification, WORD id) override;
  void Complete() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  RECT Place() const override;
  void Fit() override;
  void ShowEnabled() override;
  void CentreEdit() const;
  // Takes over what the system has written into the field without a notice.
  void TakeField();
  // The window's selected item, from 1; 0 if none.
  std::int32_t Chosen() const;
  void ShowItems();
  void ShowText();

  static constexpr UINT TakeFieldMessage = WM_USER + 3;

  ImageCombo& combo;
  std::vector<std::string> shownItems;
  HWND edit = nullptr;  // null for a drop-down list
  std::unique_ptr<NamedWindow> namedEdit;
  bool isShowing = false;
  bool isDropped = false;
};

}  // namespace kw::windows
