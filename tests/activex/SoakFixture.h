#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/activex/InputFixture.h"
#include "tests/activex/OwnMemory.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {

// What this process holds.
struct Holdings {
  int gdi = 0;
  int user = 0;
  int handles = 0;
  int threads = 0;
  long long ownBytes = 0;
  long ownBlocks = 0;
  long long resident = 0;
  // The heap of the system's own libraries keeps up to 1.2 MB of freed pages at one moment and none at the next.
  static constexpr long long MostResident = 2 << 20;

  static Holdings Count();
  Holdings operator-(const Holdings& before) const;
  bool IsNoMemory() const;
  bool IsNone() const;
};

std::ostream& operator<<(std::ostream& out, const Holdings& held);

// An editor that does the same thing many times. KW_SOAK_PERCENT says how much of the long form a test does.
class SoakTest : public InputTest {
protected:
  void SetUp() override;
  void TearDown() override;

  // What `whole` steps in the long form keep between their first and their last tenth. Each tenth is to leave the
  // editor as the one before.
  template <class Step>
  Holdings GrowthOf(const char* what, int whole, const std::vector<ExpectedBox>& boxes, Step&& step) {
    const int tenth = TenthOf(whole);
    Holdings first;
    for (int part = 0; part < Tenths; ++part) {
      {
        const BoxAnswerer user(boxes);
        for (int i = 0; i < tenth; ++i) {
          step();
          container.calls.clear();
          ForgetTrace();
        }
        if (part == 0 || part == Tenths - 1) Settle();
      }
      if (part == 0) first = Holdings::Count();
    }
    return Told(what, tenth * Tenths, Holdings::Count() - first);
  }
  // What is taken once, at whatever step, is no growth. A leak shows in every series of steps, so the last of at most
  // three tells, unless an earlier one is as it should be.
  template <class Step, class IsRight>
  Holdings LastGrowthOf(const char* what, int whole, const std::vector<ExpectedBox>& boxes, Step&& step,
                        IsRight&& isRight) {
    Holdings growth = GrowthOf(what, whole, boxes, step);
    for (int series = 1; series < MostSeries && !isRight(growth); ++series) growth = GrowthOf(what, whole, boxes, step);
    return growth;
  }
  template <class Step>
  void ExpectNone(const char* what, int whole, const std::vector<ExpectedBox>& boxes, Step&& step) {
    const Holdings growth =
        LastGrowthOf(what, whole, boxes, step, [](const Holdings& series) { return series.IsNone(); });
    EXPECT_EQ(growth.gdi, 0);
    EXPECT_EQ(growth.user, 0);
    EXPECT_EQ(growth.handles, 0);
    EXPECT_EQ(growth.threads, 0);
    ExpectNoMemory(growth);
  }
  static void ExpectNoMemory(const Holdings& growth);

  // A drag and a click as the window gets them.
  void Drag(POINT start, POINT end) const;
  void Press(const std::wstring& toolTip) const;
  // The spinner of the page list is turned by so many pages.
  void TurnPage(int by) const;

  std::wstring page;
  std::wstring document;
  std::wstring signature;

private:
  static constexpr int Tenths = 10;
  static constexpr int MostSeries = 3;
  static int TenthOf(int whole);
  static Holdings Told(const char* what, int steps, const Holdings& growth);
  void Settle() const;

  OwnMemory counted;
};

}  // namespace kw::test
