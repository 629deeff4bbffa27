// The own texts in the language of the container.

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr LONG EnglishLocale = 0x0409;
constexpr LONG PseudoLocale = 0x0501;

class Language : public ControlTest {
protected:
  void TearDown() override {
    container.locale = EnglishLocale;
    EXPECT_EQ(As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_LOCALEID), S_OK);
    container.LetGo();
    ControlTest::TearDown();
  }
  std::vector<std::string> ToolTips() const {
    std::vector<std::string> tips;
    for (const auto& [tip, button] : ToolBarButtons(container.ControlWindow())) tips.push_back(tip);
    return tips;
  }
  std::wstring FirstVerb() const {
    ComPtr<IEnumOLEVERB> verbs;
    EXPECT_EQ(As<IOleObject>()->EnumVerbs(&verbs), S_OK);
    OLEVERB verb = {};
    EXPECT_EQ(verbs->Next(1, &verb, nullptr), S_OK);
    std::wstring name = verb.lpszVerbName;
    CoTaskMemFree(verb.lpszVerbName);
    return name;
  }

  StrictContainer container;
};

TEST_F(Language, IsThatOfTheContainer) {
  container.locale = PseudoLocale;
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_INPLACEACTIVATE));
  const auto tips = ToolTips();
  EXPECT_EQ(std::ranges::count(tips, "[Show/Hide Background Image]"), 1);
  EXPECT_EQ(std::ranges::count(tips, "Next Page"), 1) << "a text that is given";
  EXPECT_EQ(FirstVerb(), L"[&Scanner Setup...]");
}

TEST_F(Language, FollowsTheContainer) {
  container.locale = EnglishLocale;
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_INPLACEACTIVATE));
  EXPECT_EQ(FirstVerb(), L"&Scanner Setup...");
  container.locale = PseudoLocale;
  EXPECT_EQ(As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_LOCALEID), S_OK);
  EXPECT_EQ(FirstVerb(), L"[&Scanner Setup...]");
  EXPECT_EQ(std::ranges::count(ToolTips(), "[Show/Hide Background Image]"), 1);
}

TEST_F(Language, IsEnglishIfTheContainerDoesNotSay) {
  container.Take(control.Get());
  EXPECT_EQ(FirstVerb(), L"&Scanner Setup...");
}

}  // namespace
}  // namespace kw::test
