#include "tests/torture/Stages.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "components/base/FilePath.h"
#include "components/base/RunTimeError.h"
#include "tests/support/Documents.h"

namespace kw::test {
namespace {

class Sum {
public:
  void Add(std::uint8_t byte) { sum = (sum ^ byte) * 1099511628211U; }
  std::string Text() const { return std::to_string(sum % 1'000'000'007U); }

private:
  std::uint64_t sum = 14695981039346656037U;
};

std::string ContentOf(const std::string& path) {
  const std::string bytes = ReadWhole(path);
  Sum sum;
  for (const char byte : bytes) sum.Add(static_cast<std::uint8_t>(byte));
  return std::to_string(bytes.size()) + " bytes, " + sum.Text();
}

// The picture that a document shows, or the error that it raises.
template <class Document>
std::string PictureOf(const Document& document) {
  try {
    return Told(document.Current());
  } catch (const RunTimeError& error) {
    return "error " + std::to_string(error.Number());
  }
}

std::string PagesOf(const std::string& path) {
  PictureDocument file;
  std::string told;
  file.Load(path);
  for (int page = 1; page <= file.PageCount(); ++page) {
    file.SelectPage(page);
    told += PictureOf(file) + ", ";
  }
  return told;
}

template <class Kind>
Scenario Row(std::string name, typename Kind::Procedure setUp, typename Kind::Procedure action) {
  const auto folder = std::make_shared<TemporaryFolder>();
  return {std::move(name), [=]() -> std::unique_ptr<Stage> { return std::make_unique<Kind>(folder, setUp, action); }};
}

}  // namespace

std::string Told(const Bitmap& picture) {
  if (picture.IsEmpty()) return "none";
  Sum sum;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    for (const std::uint8_t byte : picture.Row(y)) sum.Add(byte);
  }
  return std::to_string(picture.Width()) + "x" + std::to_string(picture.Height()) + "x" +
         std::to_string(picture.BitsPerPixel()) + " " + sum.Text();
}

Bitmap StagePicture(std::int32_t width, std::int32_t height, int bitsPerPixel) {
  Bitmap picture(width, height, bitsPerPixel);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(static_cast<int>(i) * 7 % 200 + y * 3 % 50);
    }
  }
  return picture;
}

Bitmap PageOfGreyTiff(int page) {
  static const TemporaryFolder folder;
  const std::string path = folder.File("pages.tif");
  WriteWhole(path, GreyTiff(page));
  PictureDocument document;
  document.Load(path);
  document.SelectPage(page);
  return document.Current();
}

void TellFiles(const TemporaryFolder& folder, State& state) {
  for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
    const std::string name = FromFilesystemPath(entry.path().filename());
    const bool isScratch = name.starts_with("tmp") && name.ends_with(".bmp");
    if (!entry.is_regular_file() || isScratch || name == Trap::TraceFileName) continue;
    state["file " + name] = ContentOf(folder.File(name));
  }
}

StageFolder::StageFolder(std::shared_ptr<TemporaryFolder> shared) : folder(std::move(shared)) {
  for (const auto& entry : std::filesystem::directory_iterator(folder->Native())) {
    std::filesystem::remove_all(entry.path());
  }
}

LibraryStage::LibraryStage(std::shared_ptr<TemporaryFolder> shared, const Procedure& setUp, Procedure procedure)
    : files(std::move(shared)), action(std::move(procedure)) {
  setUp(*this);
}

void LibraryStage::Act(Outcome& outcome) {
  isRefused = false;
  result.clear();
  action(*this);
  outcome.isRefused = isRefused;
}

State LibraryStage::Look() {
  State state;
  TellFiles(files.Folder(), state);
  if (!appended.empty()) state["file " + appended] = PagesOf(files.File(appended));
  state["pages"] = std::to_string(document.PageCount());
  state["picture"] = PictureOf(document);
  if (!shown.IsEmpty()) state["shown"] = Told(shown);
  state["result"] = result;
  return state;
}

Scenario OfLibrary(std::string name, LibraryStage::Procedure setUp, LibraryStage::Procedure action) {
  return Row<LibraryStage>(std::move(name), std::move(setUp), std::move(action));
}

EditorStage::EditorStage(std::shared_ptr<TemporaryFolder> shared, const Procedure& setUp, Procedure procedure)
    : files(std::move(shared)), action(std::move(procedure)) {
  AppDir = files.Folder().Path();
  desktop.Allow("");  // each outcome is judged by what the boxes say
  control = std::make_unique<KwEditorLayers>(desktop, events);
  control->UserControl_Initialize();
  setUp(*this);
  desktop.boxes.clear();
  events.errors.clear();
}

EditorStage::~EditorStage() {
  if (control != nullptr) control->UserControl_Terminate();
  control.reset();
  AppDir.clear();
}

void EditorStage::Act(Outcome& outcome) {
  result.clear();
  const auto tell = [&] {
    outcome.isDisabled = control != nullptr && !Form().editor.Enabled();
    for (const int number : events.errors) outcome.Add(number);
    for (const ScriptedDesktop::Box& box : desktop.boxes) outcome.isRefused |= box.title == "File Error";
  };
  try {
    action(*this);
  } catch (...) {
    tell();
    throw;
  }
  tell();
}

State EditorStage::Look() {
  State state;
  TellFiles(files.Folder(), state);
  state["result"] = result;
  if (control == nullptr) return state;
  EditorForm& form = Form();
  state["page"] = Told(form.TransLayers(Layers::PageLayer).Picture());
  state["background"] = Told(form.TransBackImage.Picture());
  state["signature"] = Told(control->SignatureImage());
  state["engine"] = PictureOf(control->Engine());
  state["layers"] = std::to_string(form.TransLayers.Count());
  state["range"] = std::to_string(form.PageIndex.Min()) + " to " + std::to_string(form.PageIndex.Max());
  state["page number"] = std::to_string(form.PageIndex.Value());
  state["printed jobs"] = std::to_string(desktop.printedJobs.size());
  return state;
}

std::vector<std::string> EditorStage::Broken() {
  std::vector<std::string> findings;
  if (control == nullptr) return findings;
  const EditorForm& form = Form();
  Layers& layers = control->LayerRoom();
  std::vector<std::int16_t> order = layers.ZOrder().Order();
  std::vector<std::int16_t> loaded;
  for (const auto& [index, layer] : form.TransLayers) {
    if (index != 0) loaded.push_back(static_cast<std::int16_t>(index));
  }
  std::ranges::sort(order);
  if (order != loaded) findings.emplace_back("the stacking order is not one of all layers");
  if (!form.TransLayers.IsLoaded(layers.CurrentLayerIndex())) findings.emplace_back("the current layer is not there");
  if (form.TransLayers(0).HasPicture()) findings.emplace_back("the template has a picture");
  if (form.PageIndex.Value() < form.PageIndex.Min() || form.PageIndex.Value() > form.PageIndex.Max()) {
    findings.emplace_back("the page number is out of its range");
  }
  if (form.kwraPrintingStatus.Visible()) findings.emplace_back("the panel of a print job shows");
  if (form.kwraScanningStatus.Visible()) findings.emplace_back("the panel of a scan shows");
  if (!desktop.openJob.empty()) findings.emplace_back("a print job is open");
  if (control->ErrorTrap().IsInProcedure()) findings.emplace_back("a procedure is under way");
  return findings;
}

void EditorStage::Recover() {
  desktop.boxes.clear();
  events.errors.clear();
  if (control == nullptr) return;
  if (!control->GetEnabled()) control->LetEnabled(true);
  if (!control->GetIsEditable()) control->LetIsEditable(true);
}

std::string EditorStage::MakeDocument(const std::string& name, int pages) const {
  std::string path = File(name);
  WriteWhole(path, GreyTiff(pages));
  return path;
}

std::string EditorStage::MakePicture(const std::string& name) const {
  std::string path = File(name);
  SavePicture(StagePicture(), path);
  return path;
}

void EditorStage::OpenLargePage() const {
  SavePicture(Bitmap(400, 300, 8), File("page.bmp"));
  control->OpenFile(File("page.bmp"));
}

void EditorStage::DragOut(float left, float top, float right, float bottom) const {
  PictureBox& canvas = Form().picCanvas;
  canvas.ReceiveFocus();
  canvas.MouseDown.Raise(1, 0, left, top);
  canvas.MouseMove.Raise(1, 0, (left + right) / 2, bottom);
  canvas.MouseMove.Raise(1, 0, right, bottom);
  canvas.MouseUp.Raise(1, 0, right, bottom);
}

Scenario OfEditor(std::string name, EditorStage::Procedure setUp, EditorStage::Procedure action) {
  return Row<EditorStage>(std::move(name), std::move(setUp), std::move(action));
}

}  // namespace kw::test
