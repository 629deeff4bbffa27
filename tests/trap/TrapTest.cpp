#include "trap/Trap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>
#include <stdexcept>

#include "components/controls/PictureBox.h"
#include "components/controls/UserControl.h"
#include "tests/support/Errors.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/ScriptedDesktop.h"
#include "tests/support/TemporaryFolder.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

using test::ReadWhole;

class TrapTest : public testing::Test {
protected:
  TrapTest() { AppDir = folder.Path(); }
  ~TrapTest() override { AppDir.clear(); }

  std::string Trace() const { return ReadWhole(folder.File("FunctionsInExecution.txt")); }
  void Fail(std::int32_t number) {
    Procedure run(trap, "Fail");
    run([&] { throw RunTimeError(number, "text of it", 42, "Somewhere"); });
  }

  test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  UserControl editor{"KwEditorLayers"};
  PictureBox picFrame{"picFrame"};
  PictureBox picCanvas{"picCanvas"};
  Log log{"KwLogCtl1"};
  test::RecordedEvents events;
  Trap trap{desktop, events, editor, picFrame, picCanvas, log};
  const std::vector<int>& numbers = events.errors;
  const std::vector<std::string>& messages = events.errorTexts;
};

TEST_F(TrapTest, ATimeStampIsMonthDayYearHourMinuteSecondOfSixReads) {
  EXPECT_EQ(trap.GetTimeStamp(), "11-15-2026 03:08:21");
  EXPECT_EQ(desktop.dateReads, 3);
  EXPECT_EQ(desktop.timeReads, 3);
}

TEST_F(TrapTest, ATimeStampHasTwoDigitsInEachPartAndFourInTheYear) {
  desktop.date = {987, 3, 7};
  desktop.time = {0, 4, 9};
  EXPECT_EQ(trap.GetTimeStamp(), "03-07-0987 00:04:09");
}

TEST_F(TrapTest, EachTracedNameIsOneLineThatEndsInCarriageReturnAndLineFeed) {
  trap.TraceFunction("UserControl_Initialize");
  trap.TraceFunction("Let MaxUndoLevels");
  EXPECT_EQ(Trace(), "UserControl_Initialize\r\nLet MaxUndoLevels\r\n");
  EXPECT_EQ(trap.FunctionHistory(), "\r\nUserControl_Initialize\r\nLet MaxUndoLevels");
}

TEST_F(TrapTest, WithoutAFolderTheTraceGoesToTheCurrentOne) {
  AppDir.clear();
  const std::filesystem::path former = std::filesystem::current_path();
  std::filesystem::current_path(folder.Native());
  trap.TraceFunction("UserControl_Initialize");
  std::filesystem::current_path(former);
  EXPECT_EQ(Trace(), "UserControl_Initialize\r\n");
}

TEST_F(TrapTest, AfterFiveThousandTracedCallsTheHistoryHolds4096CharactersAndEndsWithTheLastName) {
  for (int i = 1; i <= 5000; ++i) trap.TraceFunction("Procedure" + std::to_string(i));
  EXPECT_EQ(trap.FunctionHistory().size(), 4096U);
  EXPECT_TRUE(trap.FunctionHistory().ends_with("\r\nProcedure4999\r\nProcedure5000"));
}

TEST_F(TrapTest, TheHistoryHoldsTheLast4096CharactersAsTheyWereTraced) {
  std::string whole;
  for (int i = 1; i <= 400; ++i) {
    const std::string name = "Procedure" + std::to_string(i);
    trap.TraceFunction(name);
    whole += "\r\n" + name;
    ASSERT_EQ(trap.FunctionHistory(), whole.substr(whole.size() - std::min<std::size_t>(whole.size(), 4096))) << i;
  }
}

TEST_F(TrapTest, AnAppDirWithoutTrailingBackslashIsJoinedAsItStands) {
  AppDir = folder.File("work");
  trap.TraceFunction("SavePage");
  EXPECT_EQ(ReadWhole(folder.File("workFunctionsInExecution.txt")), "SavePage\r\n");
}

TEST_F(TrapTest, TheTraceGrowsFromOneRunToTheNext) {
  test::WriteWhole(folder.File("FunctionsInExecution.txt"), "earlier\r\n");
  trap.TraceFunction("later");
  EXPECT_EQ(Trace(), "earlier\r\nlater\r\n");
}

TEST_F(TrapTest, AnErrorIsShownInFourLinesWithItsNumberDescriptionSystemErrorAndSource) {
  desktop.Expect("Critical Error: Error Number : 53");
  Fail(53);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].prompt,
            "Error Number : 53\r\nError Description : text of it\r\nLastDllError : 42\r\nSource : Somewhere");
  EXPECT_EQ(desktop.boxes[0].title, "Critical Error");
  EXPECT_EQ(desktop.boxes[0].buttons, MessageButtons::Ok);
  EXPECT_EQ(numbers, std::vector<int>{53});
  EXPECT_EQ(messages, std::vector<std::string>{desktop.boxes[0].prompt});
}

TEST_F(TrapTest, Errors480And481ReadAsLackOfMemory) {
  desktop.Expect("Critical Error: There is not enough memory available to execute this task.", 2);
  for (const std::int32_t number : {480, 481}) {
    editor.SetEnabled(true);
    Fail(number);
    EXPECT_EQ(desktop.boxes.back().prompt,
              "There is not enough memory available to execute this task.\r\n"
              "Please close some of the other running application programs,\r\n"
              "Also you may have to close and restart this application again\r\n"
              "without saving changes ...");
    EXPECT_EQ(numbers.back(), number);
  }
  EXPECT_EQ(desktop.boxes.size(), 2U);
}

TEST_F(TrapTest, AnErrorDisablesTheEditorAndShowsTheNoDropPointer) {
  desktop.Expect("Critical Error: Error Number : 5");
  desktop.whileBoxIsUp = [&](const auto&) {
    EXPECT_FALSE(editor.Enabled());
    EXPECT_EQ(picCanvas.Pointer(), MousePointer::NoDrop);
  };
  Fail(5);
  EXPECT_EQ(picFrame.Pointer(), MousePointer::NoDrop);
  EXPECT_EQ(editor.Pointer(), MousePointer::NoDrop);
  EXPECT_FALSE(editor.Enabled());
}

TEST_F(TrapTest, TheBlockHoldsTheStampTheHistoryAndTheMessage) {
  desktop.Expect("Critical Error: Error Number : 53");
  Fail(53);
  const std::string rule(80, '*');
  EXPECT_EQ(Trace(), "Fail\r\n\r\n" + rule + "\r\n11-15-2026 03:08:21\r\n" + rule +
                         "\r\nFunctionInExecution : \r\n\r\nFail\r\n\r\n" + messages.at(0) + "\r\n" + rule + "\r\n");
}

TEST_F(TrapTest, TheBoxComesBeforeTheBlockAndTheBlockBeforeTheEvent) {
  desktop.Expect("Critical Error: Error Number : 53");
  std::vector<std::string> order;
  const auto hasBlock = [&] { return Trace().find("FunctionInExecution : ") != std::string::npos; };
  desktop.whileBoxIsUp = [&](const auto&) {
    EXPECT_FALSE(hasBlock());
    order.emplace_back("box");
  };
  events.onEvent = [&](const std::string& event) {
    EXPECT_TRUE(hasBlock());
    EXPECT_EQ(event, "ErrorOccured");
    order.emplace_back("event");
  };
  Fail(53);
  EXPECT_EQ(order, (std::vector<std::string>{"box", "event"}));
}

TEST_F(TrapTest, ASecondErrorWhileDisabledIsSilent) {
  desktop.Expect("Critical Error: Error Number : 53");
  Fail(53);
  const std::string before = Trace();
  Fail(54);
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(numbers.size(), 1U);
  EXPECT_EQ(Trace(), before + "Fail\r\n");
}

TEST_F(TrapTest, AnErrorNumberBeyond16BitsLeavesTheProcedureAsAnOverflow) {
  for (const std::int32_t number : {32768, -32769, -2147467259}) {
    desktop.Expect("Critical Error: Error Number : " + std::to_string(number));
    desktop.boxes.clear();
    editor.SetEnabled(true);
    EXPECT_EQ(test::ErrorOf([&] { Fail(number); }), 6);
    EXPECT_EQ(desktop.boxes.size(), 1U);
    EXPECT_NE(Trace().find("Error Number : " + std::to_string(number)), std::string::npos);
    EXPECT_TRUE(numbers.empty());
  }
}

TEST_F(TrapTest, AnOverflowThatLeavesAProcedureReachesTheTrapOfItsCallerWhichFindsTheEditorDisabled) {
  desktop.Expect("Critical Error: Error Number : 2147467259");
  Procedure caller(trap, "Caller");
  bool wentOn = false;
  EXPECT_FALSE(caller([&] { Fail(2147467259); }));
  caller([&] { wentOn = true; });
  EXPECT_TRUE(wentOn);
  EXPECT_EQ(desktop.boxes.size(), 1U);
  EXPECT_TRUE(numbers.empty());
}

TEST_F(TrapTest, AFolderThatCannotBeWrittenIsReportedOnceAndTheReportsOwnFailureGoesToTheCaller) {
  desktop.Expect("Critical Error: Error Number : 76");
  AppDir = folder.File("missing\\");
  try {
    Procedure run(trap, "SavePage");
    FAIL() << "no error came";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), 76);
  }
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_NE(desktop.boxes[0].prompt.find("Error Number : 76\r\n"), std::string::npos);
  EXPECT_TRUE(numbers.empty());
  EXPECT_TRUE(trap.FunctionHistory().empty());
  EXPECT_FALSE(editor.Enabled());
}

using ProcedureTest = TrapTest;

TEST_F(ProcedureTest, IsUnderWayUntilItEnds) {
  EXPECT_FALSE(trap.IsInProcedure());
  {
    const Procedure outer(trap, "Outer");
    EXPECT_TRUE(trap.IsInProcedure());
    { const Procedure inner(trap, "Inner"); }
    EXPECT_TRUE(trap.IsInProcedure());
  }
  EXPECT_FALSE(trap.IsInProcedure());
}

TEST_F(ProcedureTest, OfSeveralFailingStatementsTheFirstIsReportedAndAllOthersRun) {
  desktop.Expect("Critical Error: Error Number : 53");
  std::string ran;
  {
    Procedure run(trap, "Several");
    run([&] { ran += 'a'; });
    EXPECT_FALSE(run([&] { Raise(ErrorNumber::FileNotFound); }));
    run([&] { ran += 'b'; });
    EXPECT_FALSE(run([&] { Raise(ErrorNumber::Overflow); }));
    EXPECT_TRUE(run([&] { ran += 'c'; }));
  }
  EXPECT_EQ(ran, "abc");
  EXPECT_EQ(numbers, std::vector<int>{53});
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(ProcedureTest, LackOfMemoryIsError7AndAnyOtherExceptionError51) {
  desktop.Expect("Critical Error: Error Number : 7");
  desktop.Expect("Critical Error: Error Number : 51");
  Procedure run(trap, "Foreign");
  run([] { throw std::bad_alloc(); });
  editor.SetEnabled(true);
  run([] { throw std::out_of_range("too far"); });
  EXPECT_EQ(numbers, (std::vector<int>{7, 51}));
  EXPECT_NE(messages.at(1).find("too far"), std::string::npos);
}

TEST_F(ProcedureTest, AFailedExpressionGivesTheValueAskedForInstead) {
  desktop.Expect("Critical Error: Error Number : 6");
  Procedure run(trap, "Asking");
  EXPECT_EQ(run.Ask<int>([] { return 7; }, 0), 7);
  EXPECT_EQ(run.Ask<int>([]() -> int { Raise(ErrorNumber::Overflow); }, -1), -1);
  EXPECT_EQ(numbers, std::vector<int>{6});
}

TEST_F(ProcedureTest, WithErrorsIgnoredNothingIsReported) {
  Procedure run(trap, "Ignoring");
  run.IgnoreErrors();
  EXPECT_FALSE(run([] { Raise(ErrorNumber::FileNotFound); }));
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_TRUE(editor.Enabled());
}

TEST_F(ProcedureTest, AnErrorWhileTheBoxIsUpDoesNotReplaceTheOneReported) {
  desktop.Expect("Critical Error: Error Number : 53");
  desktop.whileBoxIsUp = [&](const auto&) { Fail(9); };
  Fail(53);
  EXPECT_EQ(numbers, std::vector<int>{53});
}

}  // namespace
}  // namespace kw
