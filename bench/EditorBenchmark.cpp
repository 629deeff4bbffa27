// The whole editor, from what the user or the host does to the painted frame, on pages of A4 at 300 dpi; and the parts
// of which each wait is made. Nothing shows boxes; dialogs are answered with OK.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/EditorBench.h"
#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

const Bitmap& PageOfDepth(int bitsPerPixel) {
  static const Bitmap colours = Photograph();
  static const Bitmap greys = ToGreyLevels(ToDepth(colours, 8));
  static const Bitmap bits = FaxPage();
  return bitsPerPixel == 24 ? colours : bitsPerPixel == 8 ? greys : bits;
}

void Create(benchmark::State& state) {
  BenchEditor editor;
  for (auto _ : state) {
    editor.Make();
    editor.Paint();
  }
}

// A document of that many pages; what it leaves is removed outside the measured time.
void OpenDocument(benchmark::State& state, int pages) {
  BenchEditor editor;
  MemoryFile page;
  TiffFormat.write(FaxPage(PageHeight / 6), page, {});
  const std::string path = editor.At("document.tif");
  {
    OutputFile file(path, Durability::Passing);
    const auto document = TiffFormat.append(file);
    for (int i = 0; i < pages; ++i) document->Append(page);
    file.Commit();
  }
  for (auto _ : state) {
    editor.Control().OpenFile(path);
    editor.Paint();
  }
}

void TurnPage(benchmark::State& state, int bitsPerPixel) {
  BenchEditor editor;
  const std::string path = editor.At("document.tif");
  for (int page = 0; page < 2; ++page) {
    PictureDocument maker;
    maker.Replace(PageOfDepth(bitsPerPixel));
    maker.Append(path);
  }
  editor.Control().OpenFile(path);
  std::int32_t page = 1;
  for (auto _ : state) {
    page = 3 - page;
    editor.Controls().PageIndex.SetValue(page);
    editor.Paint();
  }
  if (!SamePicture(editor.Controls().TransLayers(1).Picture(), PageOfDepth(bitsPerPixel))) {
    state.SkipWithError("the page is not shown");
  }
}

void RunCommand(benchmark::State& state, const std::string& command, int bitsPerPixel) {
  BenchEditor editor;
  const Bitmap& page = PageOfDepth(bitsPerPixel);
  const std::string path = editor.Save("page.bmp", page);
  editor.Control().OpenFile(path);
  editor.Paint();
  for (auto _ : state) {
    editor.Controls().tbrMoreTools.ButtonClick.Raise(command);
    editor.Paint();
    const Bitmap& result = editor.Control().Engine().Current();
    if (result.Width() == page.Width() && result.BitsPerPixel() == bitsPerPixel) continue;
    state.PauseTiming();
    editor.Control().OpenFile(path);
    editor.Paint();
    state.ResumeTiming();
  }
}

void ApplyAlone(benchmark::State& state, const Effect& effect, int bitsPerPixel) {
  const std::vector<double> values = StandardValues(effect);
  PictureDocument engine;
  const auto begin = [&] {
    Bitmap page = PageOfDepth(bitsPerPixel);
    page.MutableRow(0);
    engine.Replace(std::move(page));
  };
  begin();
  for (auto _ : state) {
    engine.Apply(effect, values, static_cast<std::int16_t>(bitsPerPixel));
    if (engine.Width() == PageWidth && engine.BitsPerPixel() == bitsPerPixel) continue;
    state.PauseTiming();
    begin();
    state.ResumeTiming();
  }
}

// The least that a command or a page turn has to do, and nothing else: a page comes into being, is written to the
// scratch file and painted. The steps follow each other as in the editor, because each of them finds in the caches what
// the one before left there; measured alone, a step works on pages that it has just touched itself.
class BareWork {
public:
  explicit BareWork(const Bitmap& first) : page(first) {}

  // A page of its own, as long as nobody else shares the pixels.
  void Begin() {
    Bitmap copy = page;
    copy.MutableRow(0);
    engine.Replace(std::move(copy));
  }
  PictureDocument& Engine() { return engine; }
  void WriteAndPaint() {
    engine.SaveScratch(scratch, {});
    const Bitmap& picture = engine.Current();
    std::vector<DisplayItem> items(1);
    items.front().bounds = {0, 0, picture.Width(), picture.Height()};
    items.front().picture = picture;
    view.Show(items, MakeColour(255, 255, 255));
    items.clear();
    view.Forget();
  }

private:
  const Bitmap& page;
  BenchEditor files;
  std::string scratch = files.At("scratch.bmp");
  PictureDocument engine;
  BenchView view;
};

void RunBareCommand(benchmark::State& state, const Effect& effect, int bitsPerPixel) {
  const std::vector<double> values = StandardValues(effect);
  BareWork work(PageOfDepth(bitsPerPixel));
  work.Begin();
  for (auto _ : state) {
    work.Engine().Apply(effect, values, static_cast<std::int16_t>(bitsPerPixel));
    work.WriteAndPaint();
    if (work.Engine().Width() == PageWidth && work.Engine().BitsPerPixel() == bitsPerPixel) continue;
    state.PauseTiming();
    work.Begin();
    work.WriteAndPaint();
    state.ResumeTiming();
  }
}

void TurnBarePage(benchmark::State& state, int bitsPerPixel) {
  BareWork work(PageOfDepth(bitsPerPixel));
  const BenchEditor files;
  const std::string path = files.Save("page.tif", PageOfDepth(bitsPerPixel));
  for (auto _ : state) {
    work.Engine().Load(path);
    work.WriteAndPaint();
  }
}

// A picture file of a photograph becomes the background or the signature.
void AssignPicture(benchmark::State& state, void (KwEditorLayers::*assign)(const std::string&)) {
  BenchEditor editor;
  const std::string path = editor.Save("photograph.jpg", PageOfDepth(24));
  for (auto _ : state) {
    (editor.Control().*assign)(path);
    editor.Paint();
  }
}

void DecodePhotograph(benchmark::State& state) {
  const BenchEditor editor;
  const std::string path = editor.Save("photograph.jpg", PageOfDepth(24));
  for (auto _ : state) benchmark::DoNotOptimize(LoadPicture(path));
}

void PlaceStamp(benchmark::State& state) {
  BenchEditor editor;
  editor.Control().OpenFile(editor.Save("page.bmp", PageOfDepth(24)));
  editor.Canvas().ReceiveFocus();
  editor.Choose("Stamp");
  for (auto _ : state) {
    editor.Desk().formAnswers.emplace_back([](DialogForm& dialog) { dialog.KeyDown.Raise(DialogForm::EnterKey, 0); });
    editor.Canvas().MouseDown.Raise(1, 0, 100, 100);
    editor.Canvas().MouseUp.Raise(1, 0, 100, 100);
    editor.Paint();
    state.PauseTiming();
    editor.Room().UnloadLayerItems();
    state.ResumeTiming();
  }
}

// A pen stroke of 500 points, each of them painted.
void DrawStroke(benchmark::State& state) {
  BenchEditor editor;
  editor.Control().OpenFile(editor.Save("page.bmp", PageOfDepth(24)));
  editor.Canvas().ReceiveFocus();
  editor.Choose("Pen");
  for (auto _ : state) {
    editor.Canvas().MouseDown.Raise(1, 0, 5, 5);
    for (int i = 1; i < 500; ++i) {
      editor.Canvas().MouseMove.Raise(1, 0, static_cast<float>(5 + i), 5 + 0.5F * static_cast<float>(i));
      editor.Paint();
    }
    editor.Canvas().MouseUp.Raise(1, 0, 505, 255);
    editor.Paint();
    state.PauseTiming();
    editor.Room().UnloadLayerItems();
    state.ResumeTiming();
  }
}

void Restack(benchmark::State& state) {
  BenchEditor editor;
  editor.Control().OpenFile(editor.Save("page.bmp", PageOfDepth(24)));
  editor.Fill(1000);
  editor.Room().SetCurrentLayer(2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(editor.Room().BringForward());
    editor.Paint();
    benchmark::DoNotOptimize(editor.Room().SendBackward());
    editor.Paint();
  }
}

void ResizeControl(benchmark::State& state) {
  BenchEditor editor;
  editor.Control().OpenFile(editor.Save("page.bmp", PageOfDepth(24)));
  float width = 900;
  for (auto _ : state) {
    width = 1900 - width;
    editor.Controls().editor.UserResize(width, width - 200);
    editor.PaintAll();
  }
}

void WriteScratch(benchmark::State& state, int bitsPerPixel) {
  const BenchEditor editor;
  for (auto _ : state) editor.Save("scratch.bmp", PageOfDepth(bitsPerPixel));
}

void ReadBack(benchmark::State& state, int bitsPerPixel) {
  const BenchEditor editor;
  const std::string path = editor.Save("scratch.bmp", PageOfDepth(bitsPerPixel));
  for (auto _ : state) benchmark::DoNotOptimize(LoadPicture(path));
}

void DecodePage(benchmark::State& state, int bitsPerPixel) {
  const BenchEditor editor;
  const std::string path = editor.Save("page.tif", PageOfDepth(bitsPerPixel));
  for (auto _ : state) benchmark::DoNotOptimize(LoadPicture(path));
}

// As the first change of a shared page does it.
void CopyOfPage(benchmark::State& state, int bitsPerPixel) {
  for (auto _ : state) {
    Bitmap copy = PageOfDepth(bitsPerPixel);
    benchmark::DoNotOptimize(copy.MutableRow(0).data());
  }
}

void PaintPage(benchmark::State& state, int bitsPerPixel) {
  BenchEditor editor;
  editor.Control().OpenFile(editor.Save("page.bmp", PageOfDepth(bitsPerPixel)));
  editor.Paint();
  for (auto _ : state) editor.PaintAll();
}

const bool added = [] {
  const auto add = [](const std::string& name, auto run) {
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMillisecond)->UseRealTime();
  };
  add("Editor/Create", Create);
  for (const int pages : {1, 5, 100, 1000}) {
    add("Editor/OpenFile/" + std::to_string(pages), [=](benchmark::State& state) { OpenDocument(state, pages); });
  }
  for (const int bits : {1, 8, 24}) {
    const auto ofDepth = [&](const std::string& name, auto run) {
      add(name + "/" + std::to_string(bits), [=](benchmark::State& state) { run(state, bits); });
    };
    ofDepth("Editor/TurnPage", TurnPage);
    ofDepth("EditorBare/TurnPage", TurnBarePage);
    ofDepth("EditorPart/ScratchWrite", WriteScratch);
    ofDepth("EditorPart/ReadBack", ReadBack);
    ofDepth("EditorPart/Decode", DecodePage);
    ofDepth("EditorPart/Copy", CopyOfPage);
    ofDepth("EditorPart/Paint", PaintPage);
    for (const Effect& effect : Effects()) {
      if (effect.procedure == nullptr) continue;
      const std::string command(effect.command);
      ofDepth("Editor/" + command, [=](benchmark::State& state, int depth) { RunCommand(state, command, depth); });
      ofDepth("EditorBare/" + command,
              [&effect](benchmark::State& state, int depth) { RunBareCommand(state, effect, depth); });
      ofDepth("EditorPart/" + command,
              [&effect](benchmark::State& state, int depth) { ApplyAlone(state, effect, depth); });
    }
  }
  add("Editor/BGImage", [](benchmark::State& state) { AssignPicture(state, &KwEditorLayers::LetBGImage); });
  add("Editor/SignatureFilePath",
      [](benchmark::State& state) { AssignPicture(state, &KwEditorLayers::LetSignatureFilePath); });
  add("EditorPart/DecodePhotograph", DecodePhotograph);
  add("Editor/Stamp", PlaceStamp);
  add("Editor/Stroke", DrawStroke);
  add("Editor/Restack", Restack);
  add("Editor/WindowSize", ResizeControl);
  return true;
}();

}  // namespace
}  // namespace kw
