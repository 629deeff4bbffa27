#include "windows/views/MenuView.h"

#include <vector>

#include "windows/base/Owned.h"
#include "windows/base/Text.h"
#include "windows/base/WaitPointer.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

void MenuView::Show(Aspect aspect) {
  if (aspect != Aspect::PopUp || !TakesInput()) return;
  OwnedMenu owned(CreatePopupMenu());
  const HMENU popUp = owned.get();
  if (popUp == nullptr) return;
  std::vector<Menu*> entries;
  for (Control* child : menu.Children()) {
    auto* const entry = dynamic_cast<Menu*>(child);
    if (entry == nullptr || !entry->Visible()) continue;
    entries.push_back(entry);
    AppendMenuW(popUp, entry->Enabled() ? MF_STRING : MF_STRING | MF_GRAYED, entries.size(),
                ToWide(entry->Caption()).c_str());
  }
  POINT mouse = {};
  GetCursorPos(&mouse);
  // Code that runs while the menu is up may close the window or unload menu entries.
  const auto held = Shared().Hold();
  const ViewTree::Message underWay(Shared());
  const WaitPointer::Rest rest;
  const BOOL chosen =
      TrackPopupMenu(popUp, TPM_RETURNCMD | TPM_RIGHTBUTTON, mouse.x, mouse.y, 0, Shared().Window(), nullptr);
  owned.reset();
  if (chosen <= 0 || !IsAttached() || !TakesInput()) return;
  Menu* const entry = entries[static_cast<std::size_t>(chosen) - 1];
  for (const Control* child : menu.Children()) {
    if (child == entry) return entry->UserChoose();
  }
}

}  // namespace kw::windows
