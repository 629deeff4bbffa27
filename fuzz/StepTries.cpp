// Steps of a user and a host, one after the other: each is a byte that names it and the bytes that it asks for.

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "annotated/AnnotatedPage.h"
#include "annotated/PageWatch.h"
#include "fuzz/FuzzedEditor.h"
#include "fuzz/Promise.h"
#include "fuzz/Tries.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/Documents.h"

namespace kw {
namespace {

constexpr int MostSteps = 150;
constexpr float MostPageSide = 600;

const std::set<ErrorNumber> ErrorsOfSteps{ErrorNumber::Overflow,
                                          ErrorNumber::OutOfMemory,
                                          ErrorNumber::TypeMismatch,
                                          ErrorNumber::FileNotFound,
                                          ErrorNumber::DiskFull,
                                          ErrorNumber::ObjectVariableNotSet,
                                          ErrorNumber::InvalidPropertyValue,
                                          ErrorNumber::InvalidPicture,
                                          ErrorNumber::Cancelled};

class Steps {
public:
  explicit Steps(std::span<const std::uint8_t> script) : bytes(script) {
    for (const int number : {1, 2, 3}) {
      const std::string name = "D" + std::to_string(number) + ".tif";
      documents.push_back(editor.Put(name, BytesOf(test::GreyTiff(number))));
    }
    documents.push_back(editor.folder.File("picture.bmp"));
    test::SavePicture(Bitmap(120, 90, 24), documents.back());
    const std::string damaged = test::GreyTiff(3);
    documents.push_back(editor.Put("cut.tif", BytesOf(damaged.substr(0, damaged.size() / 2))));
    documents.push_back(editor.folder.File("missing.tif"));
    watch.emplace(editor.desktop, editor.Form());
  }

  void Run() {
    static constexpr std::array steps{
        &Steps::Open,        &Steps::Turn,          &Steps::Verb,       &Steps::Command,   &Steps::Click,
        &Steps::Press,       &Steps::Move,          &Steps::Release,    &Steps::Tool,      &Steps::Key,
        &Steps::Menu,        &Steps::Tick,          &Steps::Type,       &Steps::Let,       &Steps::Save,
        &Steps::Load,        &Steps::Design,        &Steps::TakePage,   &Steps::DrawPage,  &Steps::GivePage,
        &Steps::Resize,      &Steps::Zoom,          &Steps::DragBorder, &Steps::Scroll,    &Steps::Label,
        &Steps::AnswerBoxes, &Steps::AnswerDialogs, &Steps::Focus,      &Steps::Clipboard, &Steps::LoseMouse};
    for (int i = 0; i < MostSteps && !bytes.empty(); ++i) {
      (this->*steps[Next() % steps.size()])();
      editor.RequireSound(ErrorsOfSteps);
      // The page must not grow for ever.
      TransparentPicture& page = editor.Form().TransLayers(Layers::PageLayer);
      page.Move(0, 0, std::min(page.Width(), MostPageSide), std::min(page.Height(), MostPageSide));
    }
  }

private:
  unsigned Next() {
    if (bytes.empty()) return 0;
    const unsigned byte = bytes.front();
    bytes = bytes.subspan(1);
    return byte;
  }
  template <class Items>
  auto& OneOf(Items& items) {
    return items[Next() % std::size(items)];
  }
  // Mostly on the page or beside it; the last ones grow beyond any window.
  float Coordinate() {
    const auto byte = static_cast<int>(Next());
    if (byte < 240) return static_cast<float>(byte * 2 - 20) + 0.5F;
    return std::ldexp(byte % 2 == 0 ? 1.0F : -1.0F, (byte - 240) * 4);
  }
  EditorForm& Form() { return editor.Form(); }
  MouseInput& Under() {
    const unsigned place = Next();
    if (place == 255) return Form().TransBackImage;
    for (const auto& [index, layer] : Form().TransLayers) {
      if (index != 0 && place != 0 && place == static_cast<unsigned>(index)) return *layer;
    }
    return Form().picCanvas;
  }

  void Open() { editor.Control().OpenFile(OneOf(documents)); }
  void Turn() { Form().PageIndex.UserSetValue(static_cast<std::int32_t>(Next() % 6)); }
  // As the object does it: only a control at rest takes a verb.
  void Verb() {
    const Dispatcher::Command* row = Dispatcher::CommandOfVerb(static_cast<std::int32_t>(Next() % 12));
    if (row == nullptr || !editor.Control().TakesVerbs()) return;
    editor.Control().CommandRoom().ToolbarButtonClick(std::string(row->key));
  }
  void Command() {
    const auto rows = Dispatcher::Commands();
    editor.Control().CommandRoom().ToolbarButtonClick(std::string(rows[Next() % rows.size()].key));
  }
  void Click() {
    const std::array<ToolBar*, 6> bars{&Form().tbrBasicTools(0), &Form().tbrBasicTools(1), &Form().tbrFillPattern,
                                       &Form().tbrFonts,         &Form().tbrMoreTools,     &Form().tbrOpenFile};
    ToolBar& bar = *OneOf(bars);
    const std::string key = OneOf(bar.Buttons()).key;
    if (!key.empty()) bar.UserClick(key);
  }
  void Press() {
    static constexpr std::array<std::int16_t, 4> buttons{1, 1, 2, 4};
    const std::int16_t button = OneOf(buttons);
    const float x = Coordinate();
    const float y = Coordinate();
    Under().MouseDown.Raise(button, static_cast<std::int16_t>(Next() % 8), x, y);
  }
  void Move() {
    const float x = Coordinate();
    const float y = Coordinate();
    Form().picCanvas.MouseMove.Raise(1, 0, x, y);
  }
  void Release() {
    const float x = Coordinate();
    const float y = Coordinate();
    Form().picCanvas.MouseUp.Raise(1, 0, x, y);
  }
  void LoseMouse() { Form().picCanvas.MouseLost.Raise(); }
  void Tool() {
    const std::string key = OneOf(Form().tbrEditingTools.Buttons()).key;
    if (!key.empty()) Form().tbrEditingTools.UserClick(key);
  }
  void Key() {
    const auto code = static_cast<std::int16_t>(Next());
    Form().picCanvas.KeyDown.Raise(code, 0);
    Form().picCanvas.KeyPress.Raise(code);
    Form().picCanvas.KeyUp.Raise(code, 0);
  }
  void Menu() {
    const std::array<kw::Menu*, 5> entries{&Form().mnuCopySelectedArea, &Form().mnuCutSelectedArea,
                                           &Form().mnuMergeDown, &Form().mnuPasteSelectedArea, &Form().mnuSelectAll};
    OneOf(entries)->UserChoose();
  }
  // A step as the others are: NOLINTNEXTLINE(readability-make-member-function-const)
  void Tick() { editor.desktop.FireTimers(); }
  void Type() {
    for (const auto& [index, layer] : Form().TransLayers) {
      if (!layer->IsTyping()) continue;
      layer->Type(std::string(Next(), Next() % 3 == 0 ? '\n' : 'x'));
      if (Next() % 2 == 0) layer->SetTyping(false);
      return;
    }
  }
  void Let() {
    KwEditorLayers& control = editor.Control();
    static constexpr std::array lets{
        &KwEditorLayers::LetEnabled, &KwEditorLayers::LetIsToLightenBackImage, &KwEditorLayers::LetIsOpenButtonVisible,
        &KwEditorLayers::LetIsToSaveAsMultiPageFile, &KwEditorLayers::LetIsToAllowChooseColor};
    static constexpr std::array states{&KwEditorLayers::LetIsEditable, &KwEditorLayers::LetIsFileChanged,
                                       &KwEditorLayers::LetIsSaveButtonEnabled, &KwEditorLayers::LetIsToolboxVisible,
                                       &KwEditorLayers::LetIsToShowBackImage};
    const unsigned which = Next() % 13;
    const unsigned value = Next();
    const std::string& path = documents[value % documents.size()];
    if (which < 5) return (control.*lets[which])(value % 2 == 0);
    if (which < 10) return (control.*states[which - 5])(value % 2 == 0);
    if (which == 10) return control.LetMaxUndoLevels(static_cast<std::int16_t>((value << 8U) | Next()));
    if (which == 11) return control.LetBGImage(value % 3 == 0 ? "" : path);
    control.LetSignatureFilePath(value % 3 == 0 ? "" : path);
  }
  void Save() {
    EncodedBag bag;
    editor.Control().UserControl_WriteProperties(bag);
    saved = bag.Encode();
  }
  // What was saved, perhaps with a byte changed behind the header.
  void Load() {
    if (saved.empty()) return;
    std::string state = saved;
    const std::size_t place = std::size_t{2} * Next();
    const auto change = static_cast<char>(Next());
    if (place >= 8 && place < state.size()) state[place] = static_cast<char>(state[place] ^ change);
    EncodedBag bag;
    if (DecodeFrom(BytesOf(state), bag) == EncodedBag::Outcome::Good) editor.ReadProperties(bag);
  }
  // A designer's control that then runs.
  void Design() {
    watch.reset();
    kept.reset();
    editor.BeginLife(true);
    for (unsigned left = Next() % 4; left > 0; --left) {
      static constexpr std::array ids{PropertyId::Enabled, PropertyId::IsEditable, PropertyId::IsToolboxVisible,
                                      PropertyId::IsToShowBackImage, PropertyId::IsOpenButtonVisible};
      editor.Control().Design(OneOf(ids), Next() % 2 == 0);
      editor.RequireSound({});
    }
    editor.Control().EndDesign();
    editor.Control().UserControl_Initialize();
    editor.Control().LetDesigned();
    AppDir = editor.folder.Path();
    watch.emplace(editor.desktop, Form());
  }
  void TakePage() { kept.emplace(Form()); }
  // The page as it was when it was taken, whatever became of its document.
  void DrawPage() {
    if (!kept || kept->IsEmpty() || kept->Width() > 4096 || kept->Height() > 4096) return;
    test::PatternText texts;
    std::int32_t rows = 0;
    kept->Draw(texts, [&rows](std::int32_t top, const Bitmap& band) {
      Promise(top == rows, "bands follow each other");
      rows += band.Height();
      return true;
    });
    Promise(rows == kept->Height(), "the bands are the whole page");
  }
  void GivePage() { editor.RequireGivenPage(); }
  void Resize() {
    const auto width = static_cast<float>(Next() * 5);
    Form().editor.UserResize(width, static_cast<float>(Next() * 4));
  }
  void Zoom() { Form().cmbZoomFactor.UserChoose(static_cast<std::int32_t>(1 + Next() % 16)); }
  void DragBorder() {
    const std::array<LightWeightMarker*, 3> borders{&Form().BorderRight, &Form().BorderBottom, &Form().BorderCorner};
    const float x = Coordinate() * 8;
    const float y = Coordinate() * 8;
    OneOf(borders)->MouseUp.Raise(1, 0, x, y);
  }
  void Scroll() {
    Form().vScroll.UserSetValue(static_cast<std::int32_t>(Next() * 2));
    Form().hScroll.UserSetValue(static_cast<std::int32_t>(Next() * 2));
  }
  void Label() { Form().Label1.Click.Raise(); }
  void AnswerBoxes() {
    editor.desktop.answers.assign(4, static_cast<MessageAnswer>(Next() % 4));
    // A nested call of the host, out of the next box.
    if (Next() % 4 != 0) return;
    editor.desktop.whileBoxIsUp = [this](const test::ScriptedDesktop::Box&) {
      editor.desktop.whileBoxIsUp = nullptr;
      Open();
    };
  }
  void AnswerDialogs() {
    editor.desktop.openAnswers.assign(1, [this](OpenDialog& dialog) { dialog.fileName = OneOf(documents); });
    editor.desktop.fontAnswers.assign(1, [this](Font& font) { font.size = static_cast<float>(4 + Next() % 60); });
    editor.desktop.colourAnswers.assign(1, [this](Colour& colour) { colour = static_cast<Colour>(Next() * 65793); });
    editor.desktop.printerAnswers.assign(1, [](PrinterDialog&) {});
  }
  void Focus() {
    const std::array<Control*, 4> controls{&Form().picCanvas, &Form().cmbZoomFactor, &Form().sldLineHeight,
                                           &Form().vScroll};
    kw::Control* const chosen = OneOf(controls);
    if (chosen->CanTakeFocus()) chosen->ReceiveFocus();
  }
  void Clipboard() { editor.desktop.clipboardFormats = {static_cast<std::int32_t>(Next() % 20)}; }

  std::span<const std::uint8_t> bytes;
  FuzzedEditor editor;
  std::vector<std::string> documents;
  std::string saved;
  std::optional<AnnotatedPage> kept;
  std::optional<PageWatch> watch;
};

}  // namespace

void TrySteps(std::span<const std::uint8_t> bytes) { Steps(bytes).Run(); }

}  // namespace kw
