// On a screen with more pixels to the inch everything is larger, and the models do not notice.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "scene/CanvasItems.h"
#include "tests/windows/TestForm.h"
#include "tests/windows/WholeEditor.h"

namespace kw::test {
namespace {

// Neighbours that meet in the models meet on the screen, and each window lies where the scale says. Returns how many
// windows there are.
int ExpectNoGaps(const Control& holder, const Scale& scale) {
  std::map<const Control*, RECT> places;
  int count = 0;
  for (const Control* child : holder.Children()) {
    if (const HWND window = WindowOf(*child)) places[child] = PlaceOf(window);
    count += ExpectNoGaps(*child, scale);
  }
  const auto meet = [](double a, double b) { return std::abs(a - b) < 1e-4; };
  for (const auto& [model, place] : places) {
    const Box own = BoundsOf(*model);
    EXPECT_EQ(place.left, scale.ToDevice(own.left)) << model->Name();
    EXPECT_EQ(place.right, scale.ToDevice(own.right)) << model->Name();
    for (const auto& [other, otherPlace] : places) {
      const Box theirs = BoundsOf(*other);
      if (meet(theirs.left, own.right)) {
        EXPECT_EQ(otherPlace.left, place.right) << model->Name();
      }
      if (meet(theirs.top, own.bottom)) {
        EXPECT_EQ(otherPlace.top, place.bottom) << model->Name();
      }
    }
  }
  return count + static_cast<int>(places.size());
}

TEST(ScaledViews, PlacesAreScaledWithoutGaps) {
  for (const std::int32_t dpi : Dpis) {
    const TestForm form{Scale(dpi)};
    EXPECT_GT(ExpectNoGaps(form.root, Scale(dpi)), 15);
  }
  const TestForm form{Scale(144)};
  const RECT frame = PlaceOf(WindowOf(form.frame));
  EXPECT_EQ(frame.left, 2);
  EXPECT_EQ(frame.top, 51);
  EXPECT_EQ(frame.right, 602);
  EXPECT_EQ(PlaceOf(WindowOf(form.vertical)).left, 602);
  EXPECT_EQ(PlaceOf(WindowOf(form.bar)).left, 6) << "inside a container that measures in twips";
}

RECT ButtonAt(const ToolBar& bar, int index) {
  RECT place = {};
  SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  return place;
}

// What the pictures of a bar's first buttons cover, as if the buttons lay on each other.
RECT PictureArea(const ToolBar& bar, int buttons) {
  const HWND window = WindowOf(bar);
  Paint(window);
  const RECT first = ButtonAt(bar, 0);
  const COLORREF background = PixelOf(window, first.left + 1, first.top + 1);
  RECT area = {};
  for (int i = 0; i < buttons; ++i) {
    const RECT button = ButtonAt(bar, i);
    for (int y = 0; y < button.bottom - button.top; ++y) {
      for (int x = 0; x < button.right - button.left; ++x) {
        if (PixelOf(window, button.left + x, button.top + y) == background) continue;
        const RECT pixel = {x, y, x + 1, y + 1};
        UnionRect(&area, &area, &pixel);
      }
    }
  }
  return area;
}

TEST(ScaledViews, ToolBarsHaveLargerButtonsWithLargerPicturesInTheirMiddle) {
  struct Row {
    std::int32_t dpi;
    int button;
    int picture;
  };
  for (const Row& row : {Row{96, 24, 16}, Row{120, 30, 20}, Row{144, 36, 24}, Row{192, 48, 32}}) {
    const TestForm form{Scale(row.dpi)};
    const RECT first = ButtonAt(form.tools, 0);
    EXPECT_EQ(first.right - first.left, row.button);
    EXPECT_EQ(first.bottom - first.top, row.button);
    EXPECT_EQ(ButtonAt(form.tools, 6).left, 0) << "six in a row, as at 96 pixels to the inch";
    EXPECT_EQ(ButtonAt(form.tools, 6).top, row.button);
    const RECT area = PictureArea(form.tools, 6);
    const int margin = (row.button - row.picture) / 2;
    EXPECT_GE(area.left, margin) << row.dpi;
    EXPECT_GE(area.top, margin) << row.dpi;
    EXPECT_LE(area.right, row.button - margin) << row.dpi;
    EXPECT_LE(area.bottom, row.button - margin) << row.dpi;
    EXPECT_GT(area.right - area.left, row.picture * 3 / 4) << row.dpi;
    EXPECT_GT(area.bottom - area.top, row.picture * 3 / 4) << row.dpi;
  }
}

TEST(ScaledViews, ButtonsWithACaptionAreAsHighAsThoseWithout) {
  for (const std::int32_t dpi : {96, 144, 192}) {
    const TestForm form{Scale(dpi)};
    const RECT caption = ButtonAt(form.bar, 5);
    EXPECT_EQ(caption.bottom - caption.top, 24 * dpi / 96);
  }
}

TEST(ScaledViews, ACaptionsButtonIsAsWideAsItsText) {
  const TestForm form{Scale(144)};
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof info;
  info.dwMask = TBIF_SIZE;
  SendMessageW(WindowOf(form.bar), TB_GETBUTTONINFOW, 6, reinterpret_cast<LPARAM>(&info));
  const HWND bar = WindowOf(form.bar);
  const HDC context = GetDC(bar);
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(bar, WM_GETFONT, 0, 0)));
  SIZE text = {};
  GetTextExtentPoint32W(context, L"More", 4, &text);
  SelectObject(context, before);
  ReleaseDC(bar, context);
  EXPECT_EQ(info.cx, text.cx + 2 * 9 + 30);
}

TEST(ScaledViews, CaptionsAreLarger) {
  const auto heightAt = [](std::int32_t dpi) {
    const TestForm form{Scale(dpi)};
    return FontHeightOf(WindowOf(form.tick));
  };
  EXPECT_EQ(heightAt(96), -11);
  EXPECT_EQ(heightAt(144), -16);
  EXPECT_EQ(heightAt(192), -22);
}

TEST(ScaledViews, AComboIsAsHighAsItsPlace) {
  for (const std::int32_t dpi : Dpis) {
    const TestForm form{Scale(dpi)};
    const RECT place = PlaceOf(WindowOf(form.combo));
    const int height = 22 * dpi / 96;
    EXPECT_NEAR(place.bottom - place.top, height, 1) << dpi;
  }
}

// The form's window came to a screen with another scale.
TEST(ScaledViews, AFormThatIsRescaledLooksAsIfItWereOpenedAtThatScale) {
  TestForm form;
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(true);
  layer.SetTextFont({.name = "Tahoma", .size = 12});
  layer.Move(20, 30, 120, 40);
  layer.SetVisible(true);
  layer.SetTyping(true);
  form.window->Rescale(Scale(144));
  form.window->Resize({0, 0, 900, 600});
  SetWindowPos(form.host, nullptr, 0, 0, 900, 600, SWP_NOZORDER | SWP_NOACTIVATE);
  const HWND field = FindWindowExW(WindowOf(form.canvas), nullptr, L"Edit", nullptr);
  EXPECT_EQ(PlaceOf(field).right, 210);
  EXPECT_EQ(FontHeightOf(field), -24);
  layer.SetTyping(false);
  layer.SetVisible(false);
  form.layers.Unload(1);
  TestForm::Pump();
  const RECT pictures = PictureArea(form.tools, 6);
  const LRESULT thumb = SendMessageW(WindowOf(form.slider), TBM_GETTHUMBLENGTH, 0, 0);
  const TestForm fresh{Scale(144)};
  const auto compare = [](const auto& self, const Control& old, const Control& made) -> void {
    for (std::size_t i = 0; i < made.Children().size(); ++i) {
      const Control& one = *old.Children()[i];
      const Control& other = *made.Children()[i];
      self(self, one, other);
      if (WindowOf(other) == nullptr) continue;
      const RECT place = PlaceOf(WindowOf(one));
      const RECT expected = PlaceOf(WindowOf(other));
      EXPECT_TRUE(EqualRect(&place, &expected)) << one.Name();
      EXPECT_EQ(FontHeightOf(WindowOf(one)), FontHeightOf(WindowOf(other))) << one.Name();
      const auto* const bar = dynamic_cast<const ToolBar*>(&one);
      if (bar == nullptr) continue;
      for (int button = 0; button < static_cast<int>(bar->Buttons().size()); ++button) {
        const RECT at = ButtonAt(*bar, button);
        const RECT expectedAt = ButtonAt(static_cast<const ToolBar&>(other), button);
        EXPECT_TRUE(EqualRect(&at, &expectedAt)) << one.Name() << " " << button;
      }
    }
  };
  compare(compare, form.root, fresh.root);
  const RECT expectedPictures = PictureArea(fresh.tools, 6);
  EXPECT_TRUE(EqualRect(&pictures, &expectedPictures));
  EXPECT_EQ(thumb, SendMessageW(WindowOf(fresh.slider), TBM_GETTHUMBLENGTH, 0, 0));
}

TEST(ScaledViews, TheFieldOfAComboLiesInItsMiddle) {
  for (const std::int32_t dpi : {96, 144, 192}) {
    UserControl root("root");
    ImageCombo combo("combo");
    combo.SetEditable(true);
    combo.SetContainer(&root);
    combo.Move(0, 0, 120, 24);
    const HWND host = TestForm::HostWindow();
    {
      const windows::EditorWindow window(root, host, {0, 0, 600, 400}, Scale(dpi));
      const HWND edit = FieldOf(combo);
      ASSERT_NE(edit, nullptr);
      const RECT field = PlaceOf(edit);
      const int middle = (field.top + field.bottom) / 2;
      const int wanted = 12 * dpi / 96;
      EXPECT_NEAR(middle, wanted, 1) << dpi;
    }
    DestroyWindow(host);
  }
}

class ScaledEditor : public WholeEditor {
protected:
  void ShowAt(const Scale& scale) {
    window.reset();  // a model has one view
    const RECT place = {0, 0, scale.ToDevice(860), scale.ToDevice(640)};
    window = std::make_unique<windows::EditorWindow>(control->Root(), host, place, scale);
    window->Show(true);
    TestForm::Pump();
  }
};

TEST_F(ScaledEditor, TheWholeFormIsScaledWithoutGaps) {
  for (const std::int32_t dpi : Dpis) {
    ShowAt(Scale(dpi));
    ShowAll();
    EXPECT_GT(ExpectNoGaps(control->Root(), Scale(dpi)), 40);
  }
}

// How many buttons of the bars below a control lie wholly within their bar; those that do not are failures.
int ButtonsWithin(const Control& holder) {
  int count = 0;
  for (const Control* child : holder.Children()) {
    count += ButtonsWithin(*child);
    if (dynamic_cast<const ToolBar*>(child) == nullptr) continue;
    const HWND bar = WindowOf(*child);
    RECT client = {};
    GetClientRect(bar, &client);
    const auto buttons = SendMessageW(bar, TB_BUTTONCOUNT, 0, 0);
    for (LRESULT i = 0; i < buttons; ++i) {
      RECT place = {};
      const auto index = static_cast<WPARAM>(i);
      if (SendMessageW(bar, TB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&place)) == FALSE) continue;  // hidden
      EXPECT_LE(place.right, client.right) << child->Name() << " " << i;
      EXPECT_LE(place.bottom, client.bottom) << child->Name() << " " << i;
      ++count;
    }
  }
  return count;
}

TEST_F(ScaledEditor, TheBarsButtonsFitIntoTheirBars) {
  const int atFirst = ButtonsWithin(control->Root());
  ASSERT_GT(atFirst, 30);
  for (const std::int32_t dpi : Dpis) {
    ShowAt(Scale(dpi));
    EXPECT_EQ(ButtonsWithin(control->Root()), atFirst) << dpi;
  }
}

}  // namespace
}  // namespace kw::test
