// Every hosted control that may have a window has a name for a screen reader.

#include "scene/Accessible.h"
#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class AccessibleNames : public EditorTest {
protected:
  // Controls that are never shown, or that are named by their own caption.
  static bool NeedsNone(const Control& control) {
    for (const std::string_view kind : {"Timer", "ImageList", "KWScannerCtl", "KwLogCtl", "Menu", "CheckBox"}) {
      if (control.Type() == kind) return true;
    }
    return control.Name() == "fr" || control.Name() == "point1";
  }
};

TEST_F(AccessibleNames, AreThereForEachControl) {
  for (const Control* control : Form().Controls()) {
    if (NeedsNone(*control)) continue;
    EXPECT_NE(AccessibleOf(*control).name, "") << control->Name() << " of type " << control->Type();
  }
}

TEST_F(AccessibleNames, TellTheOpenPage) {
  EXPECT_EQ(AccessibleOf(Form().editor).name, "Image annotation editor");
  control->OpenFile(MakeDocument("fax.tif", 5));
  EXPECT_EQ(AccessibleOf(Form().editor).name, "Image annotation editor, page 1 of 5");
  EXPECT_EQ(AccessibleOf(Form().TransLayers(1)).name, "Page 1 of 5");
  EXPECT_EQ(AccessibleOf(Form().lblPageNo).name, "Page of 5");
  Form().PageIndex.UserSetValue(2);
  EXPECT_EQ(AccessibleOf(Form().editor).name, "Image annotation editor, page 2 of 5");
  EXPECT_EQ(AccessibleOf(Form().TransLayers(1)).name, "Page 2 of 5");
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_EQ(AccessibleOf(Form().editor).name, "Image annotation editor, page 1 of 1");
}

TEST_F(AccessibleNames, TellNoPageIfNoneCouldBeOpened) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeImage("scan.bmp"));
  const std::string none = folder.File("none.tif");
  WriteWhole(none, "no picture");
  control->OpenFile(none);
  EXPECT_EQ(AccessibleOf(Form().editor).name, "Image annotation editor");
}

}  // namespace
}  // namespace kw::test
