// A hand and a host that do anything to the real control in a real container: presses, drags, keys, buttons, verbs,
// properties, documents, resizes at random, with every box, dialog and menu that comes up closed again. What each event
// is follows from the seed and its number. KW_MONKEY_SEED and KW_MONKEY_EVENTS ask for another run or a longer one.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <iterator>

#include "tests/activex/MonkeyHand.h"

namespace kw::test {
namespace {

int NumberFrom(const char* variable, int otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::atoi(text);
}

class OcxMonkey : public MonkeyHand {
protected:
  // What must hold between two events. The last is asked of the windows one by one, which takes its time.
  void CheckWhatAlwaysHolds(int event) {
    ASSERT_NE(IsWindow(editor), FALSE);
    ASSERT_EQ(GetParent(editor), container.Window());
    ASSERT_EQ(BoxOf(GetCurrentThreadId()), nullptr) << "a box is left: " << WordsOf(BoxOf(GetCurrentThreadId()));
    for (const std::string& told : sink.events) ASSERT_TRUE(told.find('(') != std::string::npos) << told;
    ASSERT_GE(lastPage, 0);
    ASSERT_LE(lastPage, PagesOfTheLongest);
    if (event % 500 != 0) return;
    ASSERT_EQ(NamelessBelow(editor), std::vector<std::wstring>{}) << "a window or a part without a model";
    const HWND canvas = CanvasOf(editor);
    if (canvas == nullptr) return;
    const Accessible object = AccessibleOf(canvas);
    int picked = 0;
    for (const LONG part : PartsOf(object)) picked += HasState(object, STATE_SYSTEM_SELECTED, part) ? 1 : 0;
    ASSERT_LE(picked, 1);
  }
};

TEST_F(OcxMonkey, NothingItDoesBreaksTheControl) {
  const int events = NumberFrom("KW_MONKEY_EVENTS", 800);
  const int seed = NumberFrom("KW_MONKEY_SEED", 20261121);
  std::cout << "KW_MONKEY_SEED=" << seed << " KW_MONKEY_EVENTS=" << events << std::endl;
  for (int event = 1; event <= events; ++event) {
    Begin(seed, event);
    DoAnything();
    Drain();
    CheckWhatAlwaysHolds(event);
    if (HasFatalFailure() || HasNonfatalFailure()) FAIL() << "at event " << event;
    Tidy(event);
  }
  control->put_Enabled(VARIANT_TRUE);
  VARIANT_BOOL isEditable = VARIANT_FALSE;
  EXPECT_HRESULT_SUCCEEDED(control->get_IsEditable(&isEditable));
}

}  // namespace
}  // namespace kw::test
