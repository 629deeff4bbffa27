#include "windows/toolbar/BarRows.h"

#include <algorithm>
#include <utility>

#include "windows/base/Gdi.h"
#include "windows/toolbar/BarLayout.h"
#include "windows/toolbar/ToolBarView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

bool IsShownWithContainers(const Control& model) {
  for (const Control* one = &model; one != nullptr; one = one->Container()) {
    if (!one->Visible()) return false;
  }
  return true;
}

}  // namespace

std::vector<BarRows::Sight> BarRows::Look() const {
  std::vector<Sight> sights;
  for (ToolBarView* bar : bars) {
    if (!bar->IsAttached() || !IsShownWithContainers(bar->Model())) continue;
    const RECT bounds = bar->Bounds();
    POINT corner = {bounds.left, bounds.top};
    LONG end = WidthOf(bounds);  // visible pixels from the bar's left edge
    const ControlView* holder = bar->Container();
    for (; holder != nullptr && holder->Container() != nullptr; holder = holder->Container()) {
      const RECT around = holder->Bounds();
      end = std::min(end, WidthOf(around) - corner.x);
      corner.x += around.left;
      corner.y += around.top;
    }
    RECT form = {};
    if (holder != nullptr) GetClientRect(holder->Handle(), &form);
    end = std::min(end, form.right - corner.x);
    const BarSizes sizes = bar->Sizes();
    if (!IsOfOneRow(HeightOf(bounds), sizes)) continue;
    const BarRoom room = {static_cast<int>(end), false};
    sights.push_back({bar, corner, room.width, room.IsUsable(sizes)});
  }
  std::ranges::sort(sights, {}, [](const Sight& sight) { return std::pair(sight.corner.y, sight.corner.x); });
  return sights;
}

const BarRows::Sight* BarRows::LastUsableBefore(const std::vector<Sight>& sights, const Sight& hidden) {
  const Sight* last = nullptr;
  for (const Sight& sight : sights) {
    const bool isInRow = sight.corner.y == hidden.corner.y && sight.corner.x < hidden.corner.x;
    if (isInRow && sight.isUsable && (last == nullptr || sight.corner.x > last->corner.x)) last = &sight;
  }
  return last;
}

void BarRows::LayOut() {
  const std::vector<Sight> sights = Look();
  for (const Sight& sight : sights) sight.bar->SetRoom({sight.width, !Behind(*sight.bar).empty()});
}

std::vector<ToolBarView*> BarRows::Behind(const ToolBarView& bar) const {
  const std::vector<Sight> sights = Look();
  std::vector<ToolBarView*> behind;
  for (const Sight& sight : sights) {
    if (sight.isUsable) continue;
    const Sight* const before = LastUsableBefore(sights, sight);
    if (before != nullptr && before->bar == &bar) behind.push_back(sight.bar);
  }
  return behind;
}

}  // namespace kw::windows
