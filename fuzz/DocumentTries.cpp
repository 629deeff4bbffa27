#include <algorithm>
#include <string>

#include "document/PageFiles.h"
#include "fuzz/FuzzedEditor.h"
#include "fuzz/Promise.h"
#include "fuzz/Tries.h"
#include "stamps/StampList.h"

namespace kw {
namespace {

constexpr std::int32_t TurnedPages = 6;
constexpr std::size_t MostReadStamps = 200;

const std::set<ErrorNumber> ErrorsOfFiles{ErrorNumber::OutOfMemory, ErrorNumber::DiskFull, ErrorNumber::InvalidPicture};

void RequireUnchanged(const std::string& path, std::span<const std::uint8_t> bytes) {
  Promise(std::ranges::equal(BytesOf(test::ReadWhole(path)), bytes), "a document that is opened stays as it is");
}

}  // namespace

void TryDocument(std::span<const std::uint8_t> bytes) {
  FuzzedEditor editor;
  const std::string path = editor.Put("D.dat", bytes);
  editor.Control().OpenFile(path);
  const auto isRefused = [&editor] {
    return std::ranges::any_of(editor.desktop.boxes, [](const auto& box) { return box.title == "File Error"; });
  };
  const auto requireSound = [&] {
    Promise(isRefused() || editor.Control().LayerRoom().HasPage(), "a file is refused in a box, or its page is shown");
    editor.RequireSound(ErrorsOfFiles);
    editor.RequireGivenPage();
    editor.desktop.boxes.clear();
  };
  const bool isOpen = !isRefused();
  requireSound();
  RequireUnchanged(path, bytes);
  if (!isOpen) return;
  PageSpinner& pages = editor.Form().PageIndex;
  for (std::int32_t page = pages.Min(); page <= std::min(pages.Max(), TurnedPages); ++page) {
    pages.UserSetValue(page);
    requireSound();
  }
  if (editor.Control().TakesVerbs()) editor.Control().CommandRoom().ToolbarButtonClick("Invert");
  requireSound();
  const std::string first = GetPageFileName(path, 1);
  if (!test::Exists(first)) return;
  editor.Control().OpenFile(first);
  requireSound();
  RequireUnchanged(path, bytes);
}

void TryStamps(std::span<const std::uint8_t> bytes) {
  FuzzedEditor editor;
  editor.Put("stamps.lst", bytes);
  StampList list(editor.desktop, editor.Control().ErrorTrap());
  ImageCombo combo{"cmbStamps"};
  list.FillStampList(combo);
  const std::int32_t builtIn = combo.ItemCount() - list.UserStampCount();
  const auto isStamp = [](const std::string& text) {
    return !text.empty() && !text.starts_with(' ') && !text.ends_with(' ') && text.find('\0') == std::string::npos;
  };
  for (std::int32_t i = 1; i <= combo.ItemCount(); ++i)
    Promise(isStamp(combo.ItemText(i)), "a stamp is a trimmed text");
  for (std::size_t i = 1; i <= std::min<std::size_t>(static_cast<std::size_t>(list.UserStampCount()), MostReadStamps);
       ++i) {
    // A line of the key without "=" hides the value from who asks for that key alone.
    const std::string alone = list.ReadStamp(std::to_string(i));
    Promise(alone.empty() || combo.ItemText(builtIn + static_cast<std::int32_t>(i)) == alone,
            "a stamp is the value of its key");
  }
  const std::int16_t before = list.UserStampCount();
  list.AddStamp("Seen, by me");
  list.FillStampList(combo);
  Promise(list.UserStampCount() > before, "a stamp that is added is one more");
  Promise(combo.ItemText(builtIn + before + 1) == "Seen, by me", "a stamp that is added is listed behind the others");
  editor.RequireSound({});
}

void TryBag(std::span<const std::uint8_t> bytes) {
  EncodedBag bag;
  bag.WriteText("Kept", "x", "");
  const std::string before = bag.Encode();
  if (DecodeFrom(bytes, bag) != EncodedBag::Outcome::Good) {
    Promise(bag.Encode() == before, "a bag that cannot be read stays as it was");
    return;
  }
  const std::string encoded = bag.Encode();
  EncodedBag again;
  Promise(DecodeFrom(BytesOf(encoded), again) == EncodedBag::Outcome::Good && again.Encode() == encoded,
          "a bag is read as it was written");

  const auto written = [](KwEditorLayers& control) {
    EncodedBag state;
    control.UserControl_WriteProperties(state);
    return state.Encode();
  };
  FuzzedEditor editor;
  editor.ReadProperties(bag);
  const std::string state = written(editor.Control());
  editor.RequireSound({ErrorNumber::TypeMismatch});
  EncodedBag loaded;
  Promise(DecodeFrom(BytesOf(state), loaded) == EncodedBag::Outcome::Good, "what is saved can be loaded");
  editor.BeginLife(false);
  editor.Control().UserControl_ReadProperties(loaded);
  Promise(written(editor.Control()) == state, "what is loaded is saved again");
  editor.RequireSound({});

  // The same as the control of a designer's form.
  editor.BeginLife(true);
  editor.Control().UserControl_ReadProperties(loaded);
  Promise(written(editor.Control()) == state, "design mode keeps what is loaded");
  editor.Control().EndDesign();
  editor.Control().UserControl_Initialize();
  editor.Control().LetDesigned();
  Promise(written(editor.Control()) == state, "run time has what design mode kept");
  editor.RequireSound({});
}

}  // namespace kw
