#pragma once

#include <windows.h>

#include <vector>

namespace kw::windows {

class ToolBarView;

// The tool bars of a form. Bars may lie beside each other in rows, which a narrow form cuts off.
class BarRows {
public:
  void Add(ToolBarView& bar) { bars.push_back(&bar); }
  void Remove(const ToolBarView& bar) { std::erase(bars, &bar); }

  // Tells each bar how much of it is visible. The last visible bar of a row has the overflow menu for the bars after
  // it.
  void LayOut();
  // The hidden bars whose buttons are in that bar's overflow menu.
  std::vector<ToolBarView*> Behind(const ToolBarView& bar) const;

private:
  struct Sight {
    ToolBarView* bar;
    POINT corner;  // in the form's coordinates
    int width;     // visible width
    bool isUsable;
  };
  // The visible bars that have one row of buttons.
  std::vector<Sight> Look() const;
  static const Sight* LastUsableBefore(const std::vector<Sight>& sights, const Sight& hidden);

  std::vector<ToolBarView*> bars;
};

}  // namespace kw::windows
