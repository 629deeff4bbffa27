// What screen readers hear while windows and layers change.

#include "tests/windows/AccessibleForm.h"

#include <algorithm>

namespace kw::test {
namespace {

struct Heard {
  DWORD event;
  HWND window;
  LONG child;
  friend bool operator==(const Heard&, const Heard&) = default;
};

std::vector<Heard> heard;
TestForm* formToClose = nullptr;

void CALLBACK Hear(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG object, LONG child, DWORD /*thread*/,
                   DWORD /*time*/) {
  if (object != OBJID_CLIENT) return;
  heard.push_back({event, window, child});
  if (formToClose != nullptr) std::exchange(formToClose, nullptr)->window.reset();
}

class AccessibleEvents : public AccessibleForm {
protected:
  void TearDown() override {
    if (hook != nullptr) UnhookWinEvent(hook);
    formToClose = nullptr;
  }
  // From now on this test listens: through the message loop, or in the middle of the call that raises the event.
  void Listen(DWORD how = WINEVENT_OUTOFCONTEXT) {
    TestForm::Pump();
    hook = SetWinEventHook(EVENT_MIN, EVENT_MAX, how == WINEVENT_INCONTEXT ? GetModuleHandleW(nullptr) : nullptr, &Hear,
                           GetCurrentProcessId(), 0, how);
    ASSERT_NE(hook, nullptr);
    heard.clear();
  }
  // The events of the canvas and its parts.
  std::vector<Heard> OfCanvas() const {
    TestForm::Pump();
    std::vector<Heard> events;
    std::ranges::copy_if(heard, std::back_inserter(events), [&](const Heard& one) { return one.window == window; });
    return events;
  }
  Heard Of(DWORD event, LONG child) const { return {event, window, child}; }

  HWINEVENTHOOK hook = nullptr;
};

TEST_F(AccessibleEvents, TellOfSelectionAndFocusOfALayer) {
  SetFocus(window);
  Listen();
  const LONG first = IdOf(L"Rectangle layer 1");
  const LONG second = IdOf(L"Rectangle layer 2");
  Pick(form.layers(1));
  EXPECT_EQ(OfCanvas(), (std::vector<Heard>{Of(EVENT_OBJECT_SELECTION, first), Of(EVENT_OBJECT_FOCUS, first)}));
  heard.clear();
  Pick(form.layers(1), false);
  Pick(form.layers(2));
  EXPECT_EQ(OfCanvas(), (std::vector<Heard>{Of(EVENT_OBJECT_SELECTIONREMOVE, first), Of(EVENT_OBJECT_SELECTION, second),
                                            Of(EVENT_OBJECT_FOCUS, second)}));
}

TEST_F(AccessibleEvents, TellOfThePickedLayerWhenTheCanvasGetsTheKeyboard) {
  SetFocus(form.host);
  Pick(form.layers(1));
  Listen();
  SetFocus(window);
  const std::vector<Heard> events = OfCanvas();
  EXPECT_NE(std::ranges::find(events, Of(EVENT_OBJECT_FOCUS, IdOf(L"Rectangle layer 1"))), events.end());
}

TEST_F(AccessibleEvents, TellOfCreationAndRemoval) {
  Listen();
  TransparentPicture& layer = AddLayer(3, 10, 10, 20, 20);
  const LONG third = IdOf(L"Rectangle layer 3");
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{Of(EVENT_OBJECT_CREATE, third)}) << "once it is seen";
  heard.clear();
  layer.SetVisible(false);
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{Of(EVENT_OBJECT_DESTROY, third)});
  heard.clear();
  form.layers.Unload(3);
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{});
  const LONG second = IdOf(L"Rectangle layer 2");
  form.layers.Unload(2);
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{Of(EVENT_OBJECT_DESTROY, second)});
}

TEST_F(AccessibleEvents, TellOfNamesAndValues) {
  TransparentPicture& layer = form.layers(2);
  layer.SetFigure({.kind = FigureKind::Text});
  Listen();
  const LONG second = IdOf(L"Text layer 2");
  layer.SetCaption("checked");
  form.page.SetAccessibleName("Page 2 of 5");
  const LONG page = IdOf(L"Page 2 of 5");
  EXPECT_EQ(OfCanvas(), (std::vector<Heard>{Of(EVENT_OBJECT_VALUECHANGE, second), Of(EVENT_OBJECT_NAMECHANGE, page)}));
  heard.clear();
  layer.SetCaption("checked");
  form.page.SetAccessibleName("Page 2 of 5");
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{}) << "nothing changed";
  form.root.SetAccessibleName("Editor, page 2 of 5");
  form.sample.SetRoleOfDesign(AccessibleRole::Button);
  form.sample.SetBackColor(MakeColour(1, 2, 3));
  form.label.SetCaption("Thickness 7");
  TestForm::Pump();
  const auto isHeard = [](DWORD event, HWND of) {
    return std::ranges::find(heard, Heard{event, of, CHILDID_SELF}) != heard.end();
  };
  EXPECT_TRUE(isHeard(EVENT_OBJECT_NAMECHANGE, form.window->Handle()));
  EXPECT_TRUE(isHeard(EVENT_OBJECT_VALUECHANGE, WindowOf(form.sample)));
  EXPECT_TRUE(isHeard(EVENT_OBJECT_NAMECHANGE, WindowOf(form.label)));
}

TEST_F(AccessibleEvents, TellNothingOfRubberBandAndMarkers) {
  TransparentPicture rubberBand("fr");
  LightWeightMarker marker("point1");
  Listen();
  rubberBand.SetContainer(&form.canvas);
  rubberBand.Move(10, 10, 30, 30);
  marker.SetContainer(&form.canvas);
  marker.Move(5, 5, 2, 2);
  EXPECT_EQ(OfCanvas(), std::vector<Heard>{});
}

TEST_F(AccessibleEvents, AreNeverRaisedInTheMiddleOfAChange) {
  Listen(WINEVENT_INCONTEXT);
  form.layers(2).SetSelectionFrame(1);
  EXPECT_EQ(heard, std::vector<Heard>{});
  EXPECT_FALSE(OfCanvas().empty());
}

TEST_F(AccessibleEvents, AListenerMayCloseTheWindow) {
  Listen(WINEVENT_INCONTEXT);
  formToClose = &form;
  for (const std::int32_t frame : {1, 0, 1, 0}) form.layers(2).SetSelectionFrame(frame);
  TestForm::Pump();
  EXPECT_EQ(form.window, nullptr);
}

TEST_F(AccessibleEvents, AFloodIsToldInShort) {
  Listen();
  for (int i = 0; i < 1000; ++i) form.page.SetAccessibleName("Page " + std::to_string(i));
  TestForm::Pump();
  EXPECT_LE(heard.size(), 65U);
  EXPECT_EQ(heard.back(), (Heard{EVENT_OBJECT_REORDER, form.window->Handle(), CHILDID_SELF}));
  heard.clear();
  form.page.SetAccessibleName("Page");
  EXPECT_EQ(OfCanvas().size(), 1U) << "afterwards all is told again";
}

}  // namespace
}  // namespace kw::test
