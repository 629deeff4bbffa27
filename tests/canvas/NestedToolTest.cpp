// An error is reported in the middle of a tool's work, and the host opens another document in its event.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/FailingFiles.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class NestedTool : public LayersTest, public testing::WithParamInterface<const char*> {
protected:
  NestedTool() {
    desktop.Allow("Critical Error: ");
    events.onEvent = [this](const std::string& raised) {
      if (raised == "ErrorOccured") control->OpenFile(other);
    };
    control->LetSignatureFilePath(MakeImage("sign.bmp", 20, 10));
  }

  // Uses the tool on the page of the fixture, with the n-th line of the trace failing. False if there are fewer.
  bool UseWithFailingTrace(int n) {
    control->LetEnabled(true);
    control->OpenFile(folder.File("page.bmp"));
    Choose(GetParam());
    ForgetTrace();
    desktop.openAnswers.assign(1, [this](OpenDialog& dialog) { dialog.fileName = sign; });
    desktop.formAnswers.assign(1, [](DialogForm& dialog) { dialog.KeyDown.Raise(13, 0); });
    hasLayer = false;
    bool hasFailed = false;
    FailingFiles files;
    files.onCall = [&](FailingFiles::Call call, const std::filesystem::path&) {
      if (call != FailingFiles::Call::Append || --n != 0) return 0;
      hasFailed = true;
      hasLayer = std::ranges::count(Trace(), "NewLayer") > 0;
      return FileTroubles[3].code;
    };
    DragOut(20, 20, 90, 80);
    return hasFailed;
  }

  std::string other = MakeImage("other.bmp", 77, 7);
  std::string sign = folder.File("sign.bmp");
  // A layer was made, or was about to be, when the line failed.
  bool hasLayer = false;
};

TEST_P(NestedTool, WorksOnNoLayerThatIsGone) {
  int withLayer = 0;
  int n = 1;
  for (; UseWithFailingTrace(n); ++n) {
    EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 77) << n;
    if (!hasLayer) continue;
    ++withLayer;
    EXPECT_EQ(Form().TransLayers.UBound(), 1) << "a layer on the other document, line " << n;
    EXPECT_EQ(Form().point1.UBound(), 0) << n;
  }
  EXPECT_GT(withLayer, 0);
  EXPECT_GT(Form().TransLayers.UBound(), 1) << "without an error";
}

INSTANTIATE_TEST_SUITE_P(All, NestedTool,
                         testing::Values("NoTools", "Fill", "Pen", "Text", "Line", "Rectangle", "Circle", "Rubber",
                                         "Image", "Signature", "Stamp"));

}  // namespace
}  // namespace kw::test
