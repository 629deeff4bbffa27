#include "fuzz/FuzzedEditor.h"

#include <algorithm>
#include <vector>

#include "annotated/AnnotatedPage.h"
#include "fuzz/Promise.h"
#include "picture/formats/Formats.h"
#include "tests/drawing/PatternText.h"

namespace kw {
namespace {

constexpr std::uint64_t MostPixelBytes = std::uint64_t{16} << 20U;

// Another bag's values but for the work folder: any text would be a place to write to.
class InFolder final : public PropertyBag {
public:
  InFolder(PropertyBag& others, std::string folder) : bag(others), appDir(std::move(folder)) {}

  bool ReadBoolean(const std::string& key, bool otherwise) override { return bag.ReadBoolean(key, otherwise); }
  std::int16_t ReadInteger(const std::string& key, std::int16_t otherwise) override {
    return bag.ReadInteger(key, otherwise);
  }
  std::string ReadText(const std::string& key, const std::string& otherwise) override {
    std::string text = bag.ReadText(key, otherwise);
    return key == "AppDir" ? appDir : text;
  }
  void WriteBoolean(const std::string& /*key*/, bool /*value*/, bool /*otherwise*/) override {}
  void WriteInteger(const std::string& /*key*/, std::int16_t /*value*/, std::int16_t /*otherwise*/) override {}
  void WriteText(const std::string& /*key*/, const std::string& /*value*/, const std::string& /*otherwise*/) override {}

private:
  PropertyBag& bag;
  std::string appDir;
};

}  // namespace

PictureDocument::Options FuzzedEditor::SmallLimits() {
  PictureDocument::Options small;
  small.reading.pageMemory = MostPixelBytes;
  small.encodedBytes = 4 * MostPixelBytes;
  return small;
}

FuzzedEditor::FuzzedEditor(const PictureDocument::Options& engineOptions) : options(engineOptions) {
  desktop.Allow("");
  BeginLife(false);
}

FuzzedEditor::~FuzzedEditor() {
  control->UserControl_Terminate();
  control.reset();
  AppDir.clear();
}

std::string FuzzedEditor::Put(const std::string& name, std::span<const std::uint8_t> bytes) const {
  std::string path = folder.File(name);
  test::WriteWhole(path, {bytes.begin(), bytes.end()});
  return path;
}

void FuzzedEditor::BeginLife(bool designed) {
  if (control) control->UserControl_Terminate();
  control.reset();
  AppDir = folder.Path();
  control = std::make_unique<KwEditorLayers>(desktop, events);
  control->Engine().GetOptions() = options;
  if (designed) {
    control->BeginDesign();
  } else {
    control->UserControl_Initialize();
  }
}

void FuzzedEditor::ReadProperties(PropertyBag& bag) {
  InFolder values(bag, folder.Path());
  control->UserControl_ReadProperties(values);
}

void FuzzedEditor::RequireSound(const std::set<ErrorNumber>& mayOccur) {
  for (const int number : events.errors) {
    Promise(mayOccur.contains(static_cast<ErrorNumber>(number)), ("no error " + std::to_string(number)).c_str());
  }
  events.errors.clear();
  if (!control->IsDesigned() && !control->GetEnabled()) control->LetEnabled(true);
  Promise(!control->ErrorTrap().IsInProcedure(), "no procedure is under way between two calls");

  const EditorForm& form = Form();
  Layers& layers = control->LayerRoom();
  std::vector<std::int16_t> order = layers.ZOrder().Order();
  Promise(!order.empty() && order.front() == Layers::PageLayer, "the page is the lowest layer");
  std::ranges::sort(order);
  std::vector<std::int16_t> loaded;
  int picked = 0;
  for (const auto& [index, layer] : form.TransLayers) {
    if (index != 0) loaded.push_back(static_cast<std::int16_t>(index));
    picked += layer->SelectionFrame() != 0 ? 1 : 0;
  }
  Promise(order == loaded, "the stacking order is one of all layers");
  Promise(picked <= 1, "one layer is picked at most");
  Promise(form.TransLayers.IsLoaded(layers.CurrentLayerIndex()), "the current layer exists");
  Promise(!form.TransLayers(0).HasPicture(), "the template is empty");
  Promise(form.PageIndex.Value() >= form.PageIndex.Min() && form.PageIndex.Value() <= form.PageIndex.Max(),
          "the page number is in its range");
  Promise(std::ranges::count_if(form.tbrEditingTools.Buttons(), &ToolBar::Button::pressed) <= 1,
          "one tool is pressed at most");
}

void FuzzedEditor::RequireGivenPage() {
  const AnnotatedPage page(Form());
  if (page.IsEmpty() || PixelMemory(page.Width(), page.Height(), 24) > MostPixelBytes) return;
  test::PatternText texts;
  MemoryFile file;
  page.WriteTiff(texts, file);
  std::string warning;
  const Bitmap given = TiffFormat.open(file, {})->Read(file, 1, warning);
  Promise(warning.empty() && given.Width() == page.Width() && given.Height() == page.Height(),
          "the page that a host is given is whole");
  page.Draw(
      texts,
      [&](std::int32_t top, const Bitmap& band) {
        for (std::int32_t y = 0; y < band.Height(); ++y) {
          Promise(std::ranges::equal(band.Row(y), given.Row(top + y)), "bands of any height show the same");
        }
        return true;
      },
      std::size_t{1} << 14U);
}

EncodedBag::Outcome DecodeFrom(std::span<const std::uint8_t> bytes, EncodedBag& bag) {
  return bag.Decode([&bytes](char* to, std::size_t count) {
    const std::size_t part = std::min(count, bytes.size());
    std::ranges::copy(bytes.first(part), to);
    bytes = bytes.subspan(part);
    return part;
  });
}

std::span<const std::uint8_t> BytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace kw
