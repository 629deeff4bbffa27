// The keys that the control has a use for; all others are the host's.

#include <gtest/gtest.h>

#include <array>
#include <set>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class KeyUse : public EditorTest {
protected:
  // Of the canvas and of the control itself, which have the same keys.
  bool IsInUse(std::int16_t key, std::int16_t shift = 0) {
    bool onCanvas = false;
    bool onForm = false;
    Form().picCanvas.KeyUse.Raise(key, shift, onCanvas);
    Form().editor.KeyUse.Raise(key, shift, onForm);
    EXPECT_EQ(onCanvas, onForm) << key;
    return onCanvas;
  }
  Names LettersInUse(std::int16_t shift) {
    Names letters;
    for (std::int16_t letter = 'A'; letter <= 'Z'; ++letter) {
      if (IsInUse(letter, shift)) letters.emplace_back(1, static_cast<char>(letter));
    }
    return letters;
  }
};

TEST_F(KeyUse, IsNoneWithoutAPage) {
  for (std::int16_t key = 0; key < 256; ++key) {
    for (std::int16_t shift = 0; shift < 8; ++shift) EXPECT_FALSE(IsInUse(key, shift)) << key << " " << shift;
  }
}

TEST_F(KeyUse, IsThatOfEnterEscapeDeleteAndTheShortcuts) {
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_EQ(LettersInUse(Mouse::ControlKey), (Names{"A", "B", "C", "F", "M", "V", "X", "Y", "Z"}));
  for (const std::int16_t shift : std::to_array<std::int16_t>({0, 1, 3, 4, 5, 6, 7})) {
    EXPECT_EQ(LettersInUse(shift), Names{}) << shift;
  }
  for (std::int16_t shift = 0; shift < 8; ++shift) {
    std::set<std::int16_t> keys;
    for (std::int16_t key = 0; key < 256; ++key) {
      if ((key < 'A' || key > 'Z') && IsInUse(key, shift)) keys.insert(key);
    }
    EXPECT_EQ(keys, (std::set<std::int16_t>{13, 27, 46})) << shift;
  }
}

// Each key with a use does something: the letters are those that the handler of characters knows.
TEST_F(KeyUse, OfALetterIsACommand) {
  desktop.Expect("copy");
  desktop.Expect("mnuPasteSelectedArea_Click");
  desktop.Expect("cut");
  desktop.Expect("redo");
  desktop.Expect("undo");
  control->OpenFile(MakeImage("scan.bmp"));
  for (const char* key : {"Copy", "Cut", "Paste", "Undo", "Redo"}) BasicBar(key).SetButtonEnabled(key, true);
  for (std::int16_t letter = 'A'; letter <= 'Z'; ++letter) {
    ForgetTrace();
    Form().picCanvas.KeyPress.Raise(static_cast<std::int16_t>(letter - 'A' + 1));
    EXPECT_EQ(Trace().size() > 1, IsInUse(letter, Mouse::ControlKey)) << static_cast<char>(letter);
  }
}

}  // namespace
}  // namespace kw::test
