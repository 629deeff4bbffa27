// Each line of the trace fails in turn, and the host opens another document when it hears of the error.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/FailingFiles.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

// The host makes the control usable again before it opens the other document, or does not.
class NestedError : public LayersTest, public testing::WithParamInterface<bool> {
protected:
  NestedError() {
    desktop.Allow("");
    control->LetSignatureFilePath(MakeImage("sign.bmp", 20, 10));
    document = MakeDocument("pages.tif", 3);
  }

  // A document of three pages with a figure and a text on it, the text picked.
  void Prepare() {
    control->LetEnabled(true);
    control->OpenFile(document);
    Choose("NoTools");
    Add(20, 20, 50, 50);
    TransparentPicture& text = Add(30, 30, 60, 60);
    text.SetTextEntry(true);
    Room().PickByUser(3);
    desktop.openAnswers.assign(2, [this](OpenDialog& dialog) { dialog.fileName = other; });
    desktop.colourAnswers.assign(2, [](Colour& colour) { colour = 77; });
    desktop.printerAnswers.assign(2, [](PrinterDialog& dialog) { dialog.fromPage = dialog.toPage = 2; });
    desktop.formAnswers.clear();
    desktop.printedJobs.clear();
  }

  // Does it with each of its lines failing, and once with none.
  int FailEachLine(const std::string& what, const std::function<void()>& act) {
    SCOPED_TRACE(what);
    for (int n = 1;; ++n) {
      Prepare();
      events.onEvent = [this](const std::string& raised) {
        if (raised != "ErrorOccured") return;
        if (GetParam()) control->LetEnabled(true);
        control->OpenFile(other);
      };
      bool hasFailed = false;
      {
        FailingFiles files;
        files.onCall = [&, left = n](FailingFiles::Call call, const std::filesystem::path&) mutable {
          if (call != FailingFiles::Call::Append || --left != 0) return 0;
          hasFailed = true;
          return FileTroubles[3].code;
        };
        act();
      }
      events.onEvent = nullptr;
      desktop.boxes.clear();
      if (!hasFailed) return n - 1;
      EXPECT_EQ(Form().TransLayers(1).Picture().Width(), control->Engine().Width()) << "line " << n;
      EXPECT_FALSE(Form().fr.Visible()) << "line " << n;
      EXPECT_EQ(Form().point1.UBound(), 0) << "line " << n;
    }
  }

  std::string document;
  std::string other = MakeImage("other.bmp", 77, 7);
};

TEST_P(NestedError, OfEachCommand) {
  EditorForm& form = Form();
  for (ToolBar* const bar : {&form.tbrBasicTools(0), &form.tbrBasicTools(1), &form.tbrFillPattern, &form.tbrFonts,
                             &form.tbrMoreTools, &form.tbrOpenFile, &form.tbrEditingTools}) {
    std::vector<std::string> keys;
    for (const auto& button : bar->Buttons()) {
      if (!button.key.empty()) keys.push_back(button.key);
    }
    for (const std::string& key : keys) EXPECT_GT(FailEachLine(key, [&] { bar->ButtonClick.Raise(key); }), 0) << key;
  }
}

TEST_P(NestedError, OfEachEntryOfTheMenu) {
  EditorForm& form = Form();
  int lines = 0;
  for (Menu* const entry : {&form.mnuCopySelectedArea, &form.mnuCutSelectedArea, &form.mnuMergeDown,
                            &form.mnuPasteSelectedArea, &form.mnuSelectAll}) {
    lines += FailEachLine(entry->Name(), [&] { entry->UserChoose(); });
  }
  EXPECT_GE(lines, 4) << "there is nothing to paste";
}

TEST_P(NestedError, OfEachKey) {
  for (const std::int16_t character :
       std::initializer_list<std::int16_t>{27, 1, 2, 3, 6, 13, 22, 24, 25, 26, 'a', 46}) {
    FailEachLine("key " + std::to_string(character), [&] {
      Canvas().ReceiveFocus();
      Canvas().KeyPress.Raise(character);
      Canvas().KeyUp.Raise(46, 0);
    });
  }
}

TEST_P(NestedError, OfThePageAndTheView) {
  EditorForm& form = Form();
  EXPECT_GT(FailEachLine("page", [&] { form.PageIndex.UserSetValue(2); }), 0);
  EXPECT_GT(FailEachLine("page by its list", [&] { form.cmbPageNo.UserChoose(3); }), 0);
  EXPECT_GT(FailEachLine("zoom", [&] { form.cmbZoomFactor.UserChoose(3); }), 0);
  EXPECT_GT(FailEachLine("size", [&] { form.editor.UserResize(300, 200); }), 0);
  EXPECT_GT(FailEachLine("border", [&] { form.BorderCorner.MouseUp.Raise(1, 0, 30, 30); }), 0);
  FailEachLine("scroll", [&] { form.vScroll.UserSetValue(5); });
  FailEachLine("line", [&] { form.sldLineHeight.UserSetValue(7); });
}

TEST_P(NestedError, OfADragOfALayerAndOfTyping) {
  document = folder.File("page.bmp");
  const int ofDrag = FailEachLine("drag", [&] {
    Press(50, 50);
    Drag(90, 95);
    Release(90, 95);
  });
  EXPECT_GT(ofDrag, 0) << "that of the layer that lands";
  FailEachLine("right button", [&] { Press(50, 50, 2); });
  FailEachLine("typing", [&] {
    if (!Form().TransLayers.IsLoaded(3)) return;
    Form().TransLayers(3).SetTyping(true);
    Form().TransLayers(3).Type("text that is longer than its layer");
  });
}

TEST_P(NestedError, OfEachProperty) {
  EXPECT_GT(FailEachLine("open", [&] { control->OpenFile(document); }), 0);
  EXPECT_GT(FailEachLine("signature", [&] { control->LetSignatureFilePath(other); }), 0);
  EXPECT_GT(FailEachLine("background", [&] { control->LetBGImage(other); }), 0);
  EXPECT_GT(FailEachLine("enabled", [&] { control->LetEnabled(true); }), 0);
}

INSTANTIATE_TEST_SUITE_P(All, NestedError, testing::Bool());

}  // namespace
}  // namespace kw::test
