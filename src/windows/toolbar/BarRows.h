#pragma once

#include <windows.h>

#include <vector>

namespace kw::windows {

class ToolBarView;

// The tool bars of a form, which may lie beside each other in rows that a narrow form cuts off.
class BarRows {
public:
  void Add(ToolBarView& bar) { bars.push_back(&bar); }
  void Remove(const ToolBarView& bar) { std::erase(bars, &bar); }

  // Tells each bar how much of it is to be seen. The last one of a row that is also has a menu for those behind it.
  void LayOut();
  // The bars that are out of sight and whose buttons are in that bar's menu.
  std::vector<ToolBarView*> Behind(const ToolBarView& bar) const;

private:
  struct Sight {
    ToolBarView* bar;
    POINT corner;  // on the form
    int width;     // of what is to be seen
    bool isUsable;
  };
  // Of the bars that show and that have one row of buttons.
  std::vector<Sight> Look() const;
  static const Sight* LastUsableBefore(const std::vector<Sight>& sights, const Sight& hidden);

  std::vector<ToolBarView*> bars;
};

}  // namespace kw::windows
