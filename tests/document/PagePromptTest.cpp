// The question whether to keep a page's changes. Nothing counts pages saved in this version, so no user sees it.

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class PagePrompt : public EditorTest {
protected:
  PagePrompt() {
    control->OpenFile(MakeDocument("D.tif", 3));
    control->OpenedDocument().SetPageSaveCounter(2);
    control->LetIsFileChanged(true);
    desktop.boxes.clear();
    events.changedTo.clear();
  }

  const ScriptedDesktop::Box question{"Do you want to Save Current Page?", "Save changes..",
                                      MessageButtons::YesNoCancel};
};

TEST_F(PagePrompt, AnsweredYesSavesAndGoesOn) {
  desktop.Expect("Save changes..: Do you want to Save Current Page?");
  desktop.answers = {MessageAnswer::Yes};
  ForgetTrace();
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(desktop.boxes, std::vector{question});
  const Names trace = Trace();
  ASSERT_GE(trace.size(), 5U);
  EXPECT_EQ(Names(trace.begin(), trace.begin() + 5), (Names{"PageIndex_Change", "Get IsSaveButtonEnabled",
                                                            "Get IsFileChanged", "SavePage", "Let IsFileChanged"}));
  EXPECT_FALSE(control->m_IsFileChanged);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 20);
}

TEST_F(PagePrompt, AnsweredNoDropsTheChangesAndGoesOn) {
  desktop.Expect("Save changes..: Do you want to Save Current Page?");
  desktop.answers = {MessageAnswer::No};
  ForgetTrace();
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(desktop.boxes, std::vector{question});
  const Names trace = Trace();
  ASSERT_GE(trace.size(), 4U);
  EXPECT_EQ(trace[3], "Let IsFileChanged");
  EXPECT_FALSE(control->m_IsFileChanged);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 20);
}

TEST_F(PagePrompt, CancelledGoesBackToThePageAndAsksAgainTheNextTime) {
  desktop.Expect("Save changes..: Do you want to Save Current Page?", 2);
  desktop.answers = {MessageAnswer::Cancel, MessageAnswer::No};
  Form().PageIndex.SetValue(3);
  EXPECT_EQ(desktop.boxes, std::vector{question});
  EXPECT_EQ(events.changedTo, (std::vector<int>{3, 1}));
  EXPECT_EQ(Form().PageIndex.Value(), 1);
  EXPECT_EQ(Form().cmbPageNo.Text(), "1");
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 1);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  EXPECT_TRUE(control->m_IsFileChanged);
  Form().PageIndex.SetValue(3);
  EXPECT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
}

TEST_F(PagePrompt, ComesOnlyForAChangedPageThatCanBeSavedFromTheSecondPageOn) {
  desktop.Expect("Save changes..: Do you want to Save Current Page?");
  control->LetIsSaveButtonEnabled(false);
  ForgetTrace();
  Form().PageIndex.SetValue(2);
  const Names trace = Trace();
  ASSERT_GE(trace.size(), 3U);
  EXPECT_EQ(trace[2], "Get IsFileChanged") << "both are read";
  control->LetIsSaveButtonEnabled(true);
  control->LetIsFileChanged(false);
  Form().PageIndex.SetValue(1);
  control->LetIsFileChanged(true);
  control->OpenedDocument().SetPageSaveCounter(1);
  Form().PageIndex.SetValue(2);
  EXPECT_TRUE(desktop.boxes.empty());
  control->OpenedDocument().SetPageSaveCounter(2);
  Form().PageIndex.SetValue(1);
  EXPECT_EQ(desktop.boxes, std::vector{question});
}

TEST_F(PagePrompt, DoesNotComeWhileADocumentIsOpened) {
  control->OpenFile(folder.File("D.tif"));
  EXPECT_EQ(desktop.boxes.size(), 1U) << "the list of pending work";
}

}  // namespace
}  // namespace kw::test
