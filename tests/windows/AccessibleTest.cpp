// The windows and their parts as oleacc shows them to screen readers.

#include "tests/windows/AccessibleForm.h"

#include "scene/CanvasItems.h"
#include "windows/base/Gdi.h"

namespace kw::test {
namespace {

using Texts = std::vector<std::wstring>;

class AccessibleCanvas : public AccessibleForm {
protected:
  Texts NamesOfParts() const {
    Texts names;
    for (const LONG id : PartsOf(canvas)) names.push_back(NameOf(canvas, id));
    return names;
  }
  LONG HitAt(LONG x, LONG y) const {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    VARIANT hit = {};
    EXPECT_HRESULT_SUCCEEDED(canvas->accHitTest(point.x, point.y, &hit));
    if (hit.vt == VT_I4) return hit.lVal;
    VariantClear(&hit);
    return -1;
  }
  LONG Next(LONG from, LONG direction) const {
    VARIANT end = {};
    EXPECT_HRESULT_SUCCEEDED(canvas->accNavigate(direction, ChildId(from), &end));
    if (end.vt == VT_I4) return end.lVal;
    VariantClear(&end);
    return -1;
  }
  static LONG IdIn(const VARIANT& found) { return found.vt == VT_I4 ? found.lVal : -1; }
};

TEST_F(AccessibleCanvas, HasNameRoleAndItsPartsBackToFront) {
  EXPECT_EQ(NameOf(canvas), L"Canvas");
  EXPECT_EQ(RoleOf(canvas), ROLE_SYSTEM_DOCUMENT);
  EXPECT_EQ(NamesOfParts(), (Texts{L"Page 1 of 1", L"Bottom border", L"Rectangle layer 1", L"Rectangle layer 2"}));
  EXPECT_EQ(RoleOf(canvas, IdOf(L"Rectangle layer 1")), ROLE_SYSTEM_GRAPHIC);
  EXPECT_EQ(RoleOf(canvas, IdOf(L"Bottom border")), ROLE_SYSTEM_GRIP);
  wchar_t text[64] = {};
  GetWindowTextW(window, text, 64);
  EXPECT_EQ(std::wstring(text), L"Canvas");
}

TEST_F(AccessibleCanvas, TellsATextLayersKindAndText) {
  TransparentPicture& layer = form.layers(2);
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetCaption("checked \xE6\x89\xBF");
  const LONG id = IdOf(L"Text layer 2");
  EXPECT_EQ(RoleOf(canvas, id), ROLE_SYSTEM_STATICTEXT);
  EXPECT_EQ(ValueOf(canvas, id), L"checked \x627F");
  EXPECT_EQ(ValueOf(canvas, IdOf(L"Rectangle layer 1")), L"");
}

TEST_F(AccessibleCanvas, PartsLieWhereTheyAreDrawnAndAreHitThere) {
  Pick(form.layers(2));
  const auto drawn = ItemsOf(form.canvas);
  const std::vector<LONG> parts = PartsOf(canvas);
  ASSERT_EQ(drawn.size(), 4U);
  ASSERT_EQ(parts.size(), 12U);
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    RECT expected = windows::ToRect(drawn[i].bounds);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&expected), 2);
    const RECT found = PlaceOf(canvas, parts[i]);
    EXPECT_TRUE(EqualRect(&found, &expected)) << i;
  }
  EXPECT_EQ(HitAt(5, 5), parts[0]);
  EXPECT_EQ(HitAt(40, 30), parts[2]);
  EXPECT_EQ(HitAt(89, 69), parts[2]);
  EXPECT_EQ(HitAt(90, 69), parts[0]);
  EXPECT_EQ(HitAt(135, 70), parts[3]);
  EXPECT_EQ(HitAt(121, 61), parts[4]) << "the handle at the top left corner";
  EXPECT_EQ(HitAt(150, 201), parts[1]);
}

TEST(AccessibleCanvasAtEachScale, PartsLieWhereTheyAreDrawn) {
  const ComOnThread com;
  for (const std::int32_t dpi : Dpis) {
    const Scale scale(dpi);
    TestForm form(scale);
    form.page.SetAccessibleName("Page");
    const HWND window = WindowOf(form.canvas);
    const Accessible canvas = AccessibleOf(window);
    ASSERT_NE(canvas, nullptr);
    RECT expected = windows::ToRect(ItemsOf(form.canvas, scale).at(0).bounds);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&expected), 2);
    const RECT found = PlaceOf(canvas, PartsOf(canvas).at(0));
    EXPECT_TRUE(EqualRect(&found, &expected)) << dpi;
  }
}

TEST_F(AccessibleCanvas, IsNotHitOutsideItself) {
  VARIANT hit = {};
  RECT place = {};
  GetWindowRect(window, &place);
  EXPECT_EQ(canvas->accHitTest(place.right + 5, place.top, &hit), S_FALSE);
  EXPECT_EQ(hit.vt, VT_EMPTY);
}

TEST_F(AccessibleCanvas, LeadsFromPartToPart) {
  const std::vector<LONG> parts = PartsOf(canvas);
  EXPECT_EQ(Next(CHILDID_SELF, NAVDIR_FIRSTCHILD), parts.front());
  EXPECT_EQ(Next(CHILDID_SELF, NAVDIR_LASTCHILD), parts.back());
  EXPECT_EQ(Next(parts[0], NAVDIR_NEXT), parts[1]);
  EXPECT_EQ(Next(parts[1], NAVDIR_PREVIOUS), parts[0]);
  EXPECT_EQ(Next(parts[0], NAVDIR_PREVIOUS), -1);
  EXPECT_EQ(Next(parts.back(), NAVDIR_NEXT), -1);
  VARIANT end = {};
  EXPECT_EQ(canvas->accNavigate(NAVDIR_FIRSTCHILD, ChildId(parts[0]), &end), E_INVALIDARG);
  // The windows follow the parts; a viewport has windows only.
  form.layers(2).SetTextEntry(true);
  form.layers(2).SetTyping(true);
  const Accessible viewport = AccessibleOf(WindowOf(form.frame));
  struct Step {
    const Accessible& object;
    LONG from, direction;
    HWND window;
  };
  const HWND field = GetWindow(window, GW_CHILD);
  for (const Step& step :
       {Step{canvas, parts.back(), NAVDIR_NEXT, field}, Step{canvas, CHILDID_SELF, NAVDIR_LASTCHILD, field},
        Step{viewport, CHILDID_SELF, NAVDIR_FIRSTCHILD, window},
        Step{viewport, CHILDID_SELF, NAVDIR_LASTCHILD, window}}) {
    EXPECT_EQ(step.object->accNavigate(step.direction, ChildId(step.from), &end), S_OK);
    ASSERT_EQ(end.vt, VT_DISPATCH);
    Accessible reached;
    end.pdispVal->QueryInterface(IID_PPV_ARGS(&reached));
    HWND found = nullptr;
    WindowFromAccessibleObject(reached.Get(), &found);
    EXPECT_EQ(found, step.window);
    VariantClear(&end);
  }
}

TEST_F(AccessibleCanvas, ListsTheWindowOfATextThatIsTypedBehindItsParts) {
  TransparentPicture& layer = form.layers(2);
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(true);
  layer.SetTyping(true);
  const HWND field = GetWindow(window, GW_CHILD);
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(NameOf(AccessibleOf(field)), L"Text layer 2");
  LONG count = 0;
  EXPECT_EQ(canvas->get_accChildCount(&count), S_OK);
  ASSERT_EQ(count, 5);
  VARIANT children[5] = {};
  LONG got = 0;
  EXPECT_EQ(AccessibleChildren(canvas.Get(), 0, 5, children, &got), S_OK);
  EXPECT_EQ(got, 5);
  EXPECT_EQ(children[3].vt, VT_I4);
  EXPECT_EQ(children[4].vt, VT_DISPATCH);
  for (VARIANT& child : children) VariantClear(&child);
  EXPECT_EQ(HitAt(135, 70), -1) << "the field is an object of its own";
}

TEST_F(AccessibleCanvas, TellsWhichLayerIsPickedAndHasTheKeyboard) {
  const LONG first = IdOf(L"Rectangle layer 1");
  VARIANT found = {};
  EXPECT_EQ(canvas->get_accSelection(&found), S_FALSE);
  EXPECT_TRUE(HasState(canvas, STATE_SYSTEM_SELECTABLE, first));
  EXPECT_FALSE(HasState(canvas, STATE_SYSTEM_SELECTED, first));
  EXPECT_FALSE(HasState(canvas, STATE_SYSTEM_SELECTABLE, IdOf(L"Page 1 of 1")));
  Pick(form.layers(1));
  EXPECT_TRUE(HasState(canvas, STATE_SYSTEM_SELECTED, first));
  EXPECT_FALSE(HasState(canvas, STATE_SYSTEM_FOCUSED, first));
  EXPECT_EQ(canvas->get_accSelection(&found), S_OK);
  EXPECT_EQ(IdIn(found), first);
  SetFocus(window);
  EXPECT_TRUE(HasState(canvas, STATE_SYSTEM_FOCUSED, first));
  EXPECT_EQ(canvas->get_accFocus(&found), S_OK);
  EXPECT_EQ(IdIn(found), first);
  Pick(form.layers(1), false);
  EXPECT_FALSE(HasState(canvas, STATE_SYSTEM_SELECTED, first));
}

TEST_F(AccessibleCanvas, PicksALayerForTheClient) {
  int picks = 0;
  form.layers(2).Pick.Connect([&] { ++picks; });
  const LONG second = IdOf(L"Rectangle layer 2");
  BSTR action = nullptr;
  EXPECT_EQ(canvas->get_accDefaultAction(ChildId(second), &action), S_OK);
  EXPECT_EQ(TakeText(action), L"Pick");
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(second)), S_OK);
  EXPECT_EQ(picks, 1);
  EXPECT_EQ(canvas->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, ChildId(second)), S_OK);
  EXPECT_EQ(picks, 2);
  EXPECT_EQ(GetFocus(), window);
  EXPECT_EQ(canvas->accSelect(SELFLAG_EXTENDSELECTION, ChildId(second)), E_INVALIDARG);
  EXPECT_EQ(canvas->accSelect(SELFLAG_TAKESELECTION, ChildId(IdOf(L"Page 1 of 1"))), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(IdOf(L"Page 1 of 1"))), DISP_E_MEMBERNOTFOUND);
  form.window->AllowInput(false);
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(second)), S_OK);
  EXPECT_EQ(picks, 2) << "the host allows no input";
  EXPECT_TRUE(HasState(canvas, STATE_SYSTEM_UNAVAILABLE, second));
}

TEST_F(AccessibleCanvas, ServesLateBoundClients) {
  Microsoft::WRL::ComPtr<IDispatch> late;
  ASSERT_HRESULT_SUCCEEDED(canvas.As(&late));
  wchar_t member[] = L"accName";
  LPOLESTR names[] = {member};
  DISPID id = 0;
  const HRESULT found = late->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &id);
  if (found == TYPE_E_LIBNOTREGISTERED || found == TYPE_E_CANTLOADLIBRARY)
    GTEST_SKIP() << "this system has no type library of IAccessible";
  ASSERT_EQ(found, S_OK);
  VARIANT child = ChildId(IdOf(L"Rectangle layer 1"));
  DISPPARAMS arguments = {&child, nullptr, 1, 0};
  VARIANT result = {};
  EXPECT_EQ(late->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &arguments, &result, nullptr, nullptr),
            S_OK);
  ASSERT_EQ(result.vt, VT_BSTR);
  EXPECT_EQ(TakeText(result.bstrVal), L"Rectangle layer 1");
}

TEST_F(AccessibleForm, NamesOtherWindowsByCaptionAndToolTip) {
  form.label.SetCaption("Thickness 3");
  const Accessible label = AccessibleOf(WindowOf(form.label));
  EXPECT_EQ(NameOf(label), L"Thickness 3");
  EXPECT_EQ(RoleOf(label), ROLE_SYSTEM_STATICTEXT);
  EXPECT_EQ(NameOf(AccessibleOf(WindowOf(form.tick))), L"Lighten");
  form.slider.SetAccessibleName("Thickness");
  EXPECT_EQ(NameOf(AccessibleOf(WindowOf(form.slider))), L"Thickness");
  EXPECT_EQ(RoleOf(AccessibleOf(WindowOf(form.panel))), ROLE_SYSTEM_GROUPING);
  EXPECT_EQ(RoleOf(AccessibleOf(form.window->Handle())), ROLE_SYSTEM_PANE);
}

TEST_F(AccessibleForm, PressesAButtonForTheClientThroughTheMessageLoop) {
  int presses = 0;
  form.close.SetIsButton(true);
  form.close.SetAccessibleName("Hide Tools");
  form.close.MouseDown.Connect([&](auto...) { ++presses; });
  const Accessible button = AccessibleOf(WindowOf(form.close));
  EXPECT_EQ(RoleOf(button), ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(button->accDoDefaultAction(ChildId(CHILDID_SELF)), S_OK);
  EXPECT_EQ(presses, 0);
  TestForm::Pump();
  EXPECT_EQ(presses, 1);
}

}  // namespace
}  // namespace kw::test
