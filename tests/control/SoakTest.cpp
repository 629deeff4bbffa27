// What the editor does over and over keeps no byte of memory. The address sanitizer counts what is in use.

#include "tests/support/Watched.h"

#if defined(__SANITIZE_ADDRESS__) || KW_HAS_FEATURE(address_sanitizer)

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>

#include "annotated/AnnotatedPage.h"
#include "annotated/PageWatch.h"
#include "scene/Accessible.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/EditorFixture.h"

// Of the sanitizer's library, whose header not every compiler brings.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace kw::test {
namespace {

class Soak : public EditorTest {
protected:
  Soak() {
    desktop.Allow("DoPreCommandProcess");
    desktop.Allow("Capture");
    desktop.Allow("File Error: Invalid file format..");
    control->OpenFile(document);
    // The history of the trace is as long as it gets.
    for (int i = 0; i < 400; ++i) control->LetMaxUndoLevels(9);
    Forget();
  }

  // Runs `whole` steps, or the part of them that KW_SOAK_PERCENT asks for, and expects that nothing stays between the
  // first tenth and the last.
  template <class Step>
  void ExpectNone(int whole, Step&& step) {
    constexpr int tenths = 10;
    const char* const text = std::getenv("KW_SOAK_PERCENT");
    const int tenth = std::max(20, whole * (text == nullptr ? 2 : std::atoi(text)) / 100 / tenths);
    std::size_t first = 0;
    for (int part = 0; part < tenths; ++part) {
      for (int i = 0; i < tenth; ++i) {
        step();
        Forget();
      }
      if (part == 0) first = __sanitizer_get_current_allocated_bytes();
    }
    EXPECT_EQ(__sanitizer_get_current_allocated_bytes(), first) << tenth * tenths << " steps";
  }
  void Forget() {
    desktop.Forget();
    events.Forget();
    ForgetTrace();
  }

  const std::string document = MakeDocument("D.tif", 3);
  const std::string image = MakeImage("I.bmp", 60, 50);
};

TEST_F(Soak, PageTurns) {
  ExpectNone(5000, [&] {
    Form().PageIndex.UserSetValue(2);
    Form().PageIndex.UserSetValue(1);
    ASSERT_EQ(events.changedTo, (std::vector<int>{2, 1}));
  });
}

TEST_F(Soak, Openings) {
  const std::string missing = folder.File("missing.tif");
  ExpectNone(340, [&] {
    for (const std::string& path : {image, missing, document}) control->OpenFile(path);
  });
}

TEST_F(Soak, Lives) {
  ExpectNone(1000, [&] {
    control.reset();
    control = std::make_unique<KwEditorLayers>(desktop, events);
    control->UserControl_Initialize();
    control->OpenFile(document);
  });
}

TEST_F(Soak, LayersMadeAndRemoved) {
  ExpectNone(1000, [&] {
    for (int i = 0; i < 10; ++i) control->LayerRoom().NewLayer()->SetVisible(true);
    ASSERT_EQ(Form().TransLayers.UBound(), 11);
    control->OpenFile(image);
  });
}

TEST_F(Soak, PrintedPages) {
  ExpectNone(340, [&] {
    desktop.printerAnswers.assign(1, [](PrinterDialog&) {});
    BasicBar("PrinterSetup").UserClick("PrinterSetup");
    ASSERT_EQ(desktop.printedJobs.size(), 1U);
    ASSERT_EQ(desktop.printedJobs[0].size(), 3U);
  });
}

TEST_F(Soak, DesignModeAndBack) {
  ExpectNone(1000, [&] {
    control->BeginDesign();
    control->Design(PropertyId::BGImage, image);
    control->EndDesign();
    control->LetDesigned();
  });
}

TEST_F(Soak, VerbsDataAndQuestions) {
  ExpectNone(1000, [&] {
    for (const char* const verb : {"Capture", "Flip"}) control->CommandRoom().ToolbarButtonClick(verb);
    PatternText texts;
    const PageWatch watch(desktop, Form());
    const AnnotatedPage page(Form());
    ASSERT_TRUE(page.Draw(texts, [](std::int32_t, const Bitmap&) { return true; }));
    for (const AccessiblePart& part : PartsOf(Form().picCanvas)) AccessibleOf(*part.item);
    RecordedBag bag;
    control->UserControl_WriteProperties(bag);
  });
}

}  // namespace
}  // namespace kw::test

#endif
