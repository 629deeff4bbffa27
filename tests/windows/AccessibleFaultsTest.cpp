// Clients that keep what is gone, ask for what is not there, or call from where they must not.

#include "tests/windows/AccessibleForm.h"

#include <functional>
#include <thread>

#include "tests/windows/FailingMemory.h"
#include "windows/views/AccessibleSource.h"

namespace kw::test {
namespace {

using Microsoft::WRL::ComPtr;

// What a call of each method gives, with a child id that may be good or bad.
std::vector<HRESULT> CallEach(IAccessible* object, const VARIANT& child) {
  IDispatch* dispatch = nullptr;
  LONG number = 0;
  BSTR text = nullptr;
  VARIANT variant = {};
  const auto take = [&](HRESULT result) {
    SysFreeString(std::exchange(text, nullptr));
    VariantClear(&variant);
    if (dispatch != nullptr) dispatch->Release();
    dispatch = nullptr;
    return result;
  };
  return {take(object->get_accName(child, &text)),
          take(object->get_accValue(child, &text)),
          take(object->get_accDescription(child, &text)),
          take(object->get_accHelp(child, &text)),
          take(object->get_accHelpTopic(&text, child, &number)),
          take(object->get_accKeyboardShortcut(child, &text)),
          take(object->get_accDefaultAction(child, &text)),
          take(object->get_accRole(child, &variant)),
          take(object->get_accState(child, &variant)),
          take(object->get_accChild(child, &dispatch)),
          take(object->accSelect(SELFLAG_TAKESELECTION, child)),
          take(object->accLocation(&number, &number, &number, &number, child)),
          take(object->accNavigate(NAVDIR_NEXT, child, &variant)),
          take(object->accDoDefaultAction(child)),
          take(object->put_accName(child, nullptr)),
          take(object->put_accValue(child, nullptr))};
}

// Those without a child id.
std::vector<HRESULT> CallOthers(IAccessible* object) {
  IDispatch* dispatch = nullptr;
  LONG number = 0;
  VARIANT variant = {};
  ComPtr<IEnumVARIANT> children;
  object->QueryInterface(IID_PPV_ARGS(&children));
  ComPtr<IEnumVARIANT> copy;
  ComPtr<ITypeInfo> info;
  wchar_t member[] = L"accName";
  LPOLESTR names[] = {member};
  DISPPARAMS arguments = {};
  std::vector<HRESULT> results = {object->get_accParent(&dispatch),
                                  object->get_accChildCount(&number),
                                  object->get_accFocus(&variant),
                                  object->get_accSelection(&variant),
                                  object->accHitTest(0, 0, &variant),
                                  object->GetTypeInfo(0, LOCALE_NEUTRAL, &info),
                                  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &number),
                                  object->Invoke(0, IID_NULL, LOCALE_NEUTRAL, 0, &arguments, nullptr, nullptr, nullptr),
                                  children->Next(1, &variant, nullptr),
                                  children->Skip(1),
                                  children->Reset(),
                                  children->Clone(&copy)};
  return results;
}

void ExpectAll(const std::vector<HRESULT>& results, HRESULT expected) {
  for (std::size_t i = 0; i < results.size(); ++i) EXPECT_EQ(results[i], expected) << "method " << i;
}

class AccessibleFaults : public AccessibleForm {
protected:
  void ExpectDisconnected(const Accessible& object) {
    for (const LONG id : std::initializer_list<LONG>{CHILDID_SELF, 16, 32, -1})
      ExpectAll(CallEach(object.Get(), ChildId(id)), CO_E_OBJNOTCONNECTED);
    ExpectAll(CallOthers(object.Get()), CO_E_OBJNOTCONNECTED);
  }
};

TEST_F(AccessibleFaults, AnObjectMayOutliveTheEditorsWindow) {
  const Accessible slider = AccessibleOf(WindowOf(form.slider));
  const Accessible root = AccessibleOf(form.window->Handle());
  form.window.reset();
  for (const Accessible& object : {canvas, slider, root}) ExpectDisconnected(object);
}

TEST_F(AccessibleFaults, AnObjectMayOutliveTheHostsWindow) {
  const Accessible root = AccessibleOf(form.window->Handle());
  DestroyWindow(form.host);
  ExpectDisconnected(canvas);
  ExpectDisconnected(root);
}

TEST_F(AccessibleFaults, AnObjectMayOutliveTheFieldThatATextIsTypedInto) {
  TransparentPicture& layer = form.layers(2);
  layer.SetTextEntry(true);
  layer.SetTyping(true);
  const Accessible field = AccessibleOf(GetWindow(window, GW_CHILD));
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(NameOf(field), L"Rectangle layer 2");
  layer.SetTyping(false);
  ExpectDisconnected(field);
}

TEST_F(AccessibleFaults, ALayerThatIsGoneIsABadId) {
  const LONG second = IdOf(L"Rectangle layer 2");
  form.layers.Unload(2);
  ExpectAll(CallEach(canvas.Get(), ChildId(second)), E_INVALIDARG);
  AddLayer(2, 10, 10, 20, 20);
  EXPECT_NE(IdOf(L"Rectangle layer 2"), second) << "another layer has another id";
  ExpectAll(CallEach(canvas.Get(), ChildId(second)), E_INVALIDARG);
}

TEST_F(AccessibleFaults, BadIdsAreRefused) {
  for (const LONG id : std::initializer_list<LONG>{-1, 1, 12345, 0x7FFFFFFF})
    ExpectAll(CallEach(canvas.Get(), ChildId(id)), E_INVALIDARG);
  VARIANT text = {};
  text.vt = VT_BSTR;
  ExpectAll(CallEach(canvas.Get(), text), E_INVALIDARG);
  VARIANT none = {};
  ExpectAll(CallEach(canvas.Get(), none), E_INVALIDARG);
}

TEST_F(AccessibleFaults, NullPointersAreRefused) {
  const VARIANT self = ChildId(CHILDID_SELF);
  LONG number = 0;
  ComPtr<IEnumVARIANT> children;
  ASSERT_HRESULT_SUCCEEDED(canvas.As(&children));
  ExpectAll({canvas->get_accName(self, nullptr),
             canvas->get_accValue(self, nullptr),
             canvas->get_accDescription(self, nullptr),
             canvas->get_accHelp(self, nullptr),
             canvas->get_accHelpTopic(nullptr, self, &number),
             canvas->get_accKeyboardShortcut(self, nullptr),
             canvas->get_accDefaultAction(self, nullptr),
             canvas->get_accRole(self, nullptr),
             canvas->get_accState(self, nullptr),
             canvas->get_accChild(self, nullptr),
             canvas->accLocation(nullptr, &number, &number, &number, self),
             canvas->accLocation(&number, &number, &number, nullptr, self),
             canvas->accNavigate(NAVDIR_NEXT, self, nullptr),
             canvas->accHitTest(0, 0, nullptr),
             canvas->get_accParent(nullptr),
             canvas->get_accChildCount(nullptr),
             canvas->get_accFocus(nullptr),
             canvas->get_accSelection(nullptr),
             canvas->GetTypeInfoCount(nullptr),
             canvas->GetTypeInfo(0, LOCALE_NEUTRAL, nullptr),
             canvas->GetIDsOfNames(IID_NULL, nullptr, 0, LOCALE_NEUTRAL, nullptr),
             canvas->Invoke(0, IID_NULL, LOCALE_NEUTRAL, 0, nullptr, nullptr, nullptr, nullptr),
             canvas->QueryInterface(IID_IUnknown, nullptr),
             children->Next(1, nullptr, nullptr),
             children->Clone(nullptr)},
            E_POINTER);
}

TEST_F(AccessibleFaults, LackOfMemoryIsTold) {
  const VARIANT first = ChildId(IdOf(L"Rectangle layer 1"));
  int failures = 0;
  for (long which = 1; which < 1000; ++which) {
    BSTR name = nullptr;
    HRESULT result = S_OK;
    bool hasFailed = false;
    {
      const FailingMemory memory(which);
      result = canvas->get_accName(first, &name);
      hasFailed = memory.HasFailed();
    }
    if (!hasFailed) {
      EXPECT_EQ(TakeText(name), L"Rectangle layer 1");
      break;
    }
    EXPECT_EQ(result, E_OUTOFMEMORY) << which;
    EXPECT_EQ(name, nullptr);
    ++failures;
  }
  EXPECT_GT(failures, 0);
}

TEST_F(AccessibleFaults, WithoutMemoryTheSystemAnswersForTheWindow) {
  const HWND label = WindowOf(form.label);
  const LRESULT answer = [&] {
    const FailingMemory memory(1);
    return SendMessageW(label, WM_GETOBJECT, 0, OBJID_CLIENT);
  }();
  EXPECT_LE(answer, 0);
  EXPECT_NE(AccessibleOf(label), nullptr);
}

TEST_F(AccessibleFaults, OtherObjectsOfAWindowAreTheSystems) {
  for (const LONG object : std::initializer_list<LONG>{OBJID_WINDOW, OBJID_CARET, OBJID_NATIVEOM, 17})
    EXPECT_EQ(SendMessageW(window, WM_GETOBJECT, 0, object), 0) << object;
  EXPECT_NE(AccessibleOf(window, OBJID_WINDOW), nullptr);
}

TEST_F(AccessibleFaults, AThreadThatCallsDirectlyIsRefused) {
  std::thread([&] { ExpectAll(CallEach(canvas.Get(), ChildId(CHILDID_SELF)), RPC_E_WRONG_THREAD); }).join();
  EXPECT_EQ(NameOf(canvas), L"Canvas");
}

// While the client's thread works, this one handles messages, as a host does.
void Meanwhile(const std::function<void()>& client) {
  std::atomic<bool> isDone = false;
  std::thread thread([&] {
    const ComOnThread com;
    client();
    isDone = true;
  });
  EXPECT_TRUE(TestForm::PumpUntil([&] { return isDone.load(); }));
  thread.join();
}

TEST_F(AccessibleFaults, AnotherThreadGetsTheObjectMarshalled) {
  std::wstring name;
  std::size_t parts = 0;
  Meanwhile([&] {
    const Accessible object = AccessibleOf(window);
    ASSERT_NE(object, nullptr);
    EXPECT_NE(object.Get(), canvas.Get()) << "a proxy";
    parts = PartsOf(object).size();
    name = NameOf(object, PartsOf(object).at(2));
  });
  EXPECT_EQ(parts, 4U);
  EXPECT_EQ(name, L"Rectangle layer 1");
}

TEST_F(AccessibleFaults, AnotherThreadMayKeepTheObjectOfAWindowThatIsGone) {
  canvas.Reset();
  std::atomic<bool> isHeld = false;
  std::atomic<bool> isGone = false;
  std::atomic<HRESULT> result = S_OK;
  std::thread thread([&] {
    const ComOnThread com;
    const Accessible object = AccessibleOf(window);
    isHeld = true;
    while (!isGone) Sleep(1);
    BSTR name = nullptr;
    if (object != nullptr) result = object->get_accName(ChildId(CHILDID_SELF), &name);
  });
  EXPECT_TRUE(TestForm::PumpUntil([&] { return isHeld.load(); }));
  form.window.reset();
  EXPECT_FALSE(windows::AccessibleWindow::AreObjectsHeld()) << "a client elsewhere keeps no code loaded";
  isGone = true;
  for (int i = 0; i < 50 && result == S_OK; ++i) TestForm::Pump();
  thread.join();
  EXPECT_TRUE(FAILED(result)) << std::hex << result;
}

TEST_F(AccessibleFaults, AnObjectThatAClientHoldsKeepsTheCodeLoaded) {
  EXPECT_TRUE(windows::AccessibleWindow::AreObjectsHeld());
  form.window.reset();
  EXPECT_TRUE(windows::AccessibleWindow::AreObjectsHeld());
  canvas.Reset();
  EXPECT_FALSE(windows::AccessibleWindow::AreObjectsHeld());
}

TEST_F(AccessibleFaults, AClientThatAsksAndNeverTakesTheObjectKeepsNoCodeLoaded) {
  canvas.Reset();
  for (const HWND one : {window, WindowOf(form.label), WindowOf(form.combo)})
    EXPECT_GT(SendMessageW(one, WM_GETOBJECT, GetCurrentProcessId(), OBJID_CLIENT), 0);
  form.window.reset();
  EXPECT_FALSE(windows::AccessibleWindow::AreObjectsHeld());
}

TEST_F(AccessibleFaults, AClientMayAskInTheMiddleOfAnEvent) {
  std::vector<std::wstring> heard;
  form.canvas.MouseDown.Connect([&](auto...) {
    form.layers.Unload(1);
    for (const LONG id : PartsOf(canvas)) heard.push_back(NameOf(canvas, id));
  });
  form.page.SetVisible(false);
  ClickAt(window, 5, 5);
  EXPECT_EQ(heard, (std::vector<std::wstring>{L"Bottom border", L"Rectangle layer 2"}));
}

TEST_F(AccessibleFaults, AClientsActionMayCloseTheWindow) {
  form.layers(2).Pick.Connect([&] { form.window.reset(); });
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(IdOf(L"Rectangle layer 2"))), S_OK);
  ExpectDisconnected(canvas);
}

TEST_F(AccessibleFaults, AClientsActionMayUnloadItsLayer) {
  const LONG second = IdOf(L"Rectangle layer 2");
  form.layers(2).Pick.Connect([&] { form.layers.Unload(2); });
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(second)), S_OK);
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(second)), E_INVALIDARG);
}

}  // namespace
}  // namespace kw::test
