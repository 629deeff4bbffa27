#pragma once

#include <gtest/gtest.h>

#include "tests/support/win32/AccessibleClient.h"
#include "tests/windows/TestForm.h"

namespace kw::test {

// The form with names, and what a screen reader sees of its canvas: the page, its border and two layers.
class AccessibleForm : public testing::Test {
protected:
  AccessibleForm() : window(WindowOf(form.canvas)), canvas(AccessibleOf(window)) {
    form.canvas.SetAccessibleName("Canvas");
    form.canvas.SetRoleOfDesign(AccessibleRole::Document);
    form.page.SetAccessibleName("Page 1 of 1");
    form.border.SetAccessibleName("Bottom border");
    AddLayer(1, 40, 30, 50, 40);
    AddLayer(2, 120, 60, 30, 20);
    TestForm::Pump();
  }
  void SetUp() override { ASSERT_NE(canvas, nullptr); }

  TransparentPicture& AddLayer(std::int32_t index, float left, float top, float width, float height) {
    TransparentPicture& layer = form.layers.Load(index);
    layer.Move(left, top, width, height);
    layer.SetFigure({.kind = FigureKind::Rectangle});
    layer.SetVisible(true);
    return layer;
  }
  static void Pick(TransparentPicture& layer, bool isPicked = true) {
    layer.SetSelectionFrame(isPicked ? 1 : 0);
    layer.SetIsToShowResize(isPicked);
  }
  // The child id of the part with that name; -1 if there is none.
  LONG IdOf(const std::wstring& name) const {
    for (const LONG id : PartsOf(canvas)) {
      if (NameOf(canvas, id) == name) return id;
    }
    return -1;
  }

  const ComOnThread com;
  TestForm form;
  HWND window;
  Accessible canvas;
};

}  // namespace kw::test
