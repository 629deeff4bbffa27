// What a user waits for: pages, effects, drawing.

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <cstdio>
#include <string>

#include "bench/Pages.h"
#include "bench/ocx/BenchedControl.h"
#include "bench/ocx/Sections.h"
#include "bench/ocx/SystemCalls.h"
#include "bench/ocx/Table.h"
#include "picture/PictureDocument.h"
#include "picture/effects/Effect.h"
#include "picture/formats/Formats.h"
#include "tests/activex/OwnMemory.h"
#include "tests/support/win32/ChildWindows.h"

namespace kw::bench {
namespace {

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

// The parts of a wait on a page of that depth, each alone.
struct PageParts {
  explicit PageParts(int bitsPerPixel, const BenchedControl& editor) : page(PageOfDepth(bitsPerPixel)) {
    const std::string path = Narrow(editor.Folder().File(L"part.bmp"));
    PictureDocument engine;
    engine.Replace(page);
    scratch = TimesOf(3, [&] { engine.SaveScratch(path, {}); }).Least();
    copies = 1.5 * TimesOf(3, [&] {
                     Bitmap copy = page;
                     copy.MutableRow(0);
                   }).Least();
    painting = TimesOf(3, [&] { editor.PaintCanvas(); }).Least();
    DeleteFileW(editor.Folder().File(L"part.bmp").c_str());
  }
  // What a wait may take at most.
  double Limit(double engine) const { return engine + scratch + copies + painting; }
  double EngineTime(const Effect& effect) const {
    const std::vector<double> values = StandardValues(effect);
    PictureDocument engine;
    return TimesOf(
               3, [&] { engine.Apply(effect, values); },
               [&] {
                 Bitmap own = page;
                 own.MutableRow(0);
                 engine.Replace(std::move(own));
               })
        .Least();
  }

  const Bitmap& page;
  double scratch = 0;
  double copies = 0;
  double painting = 0;
};

// A row of a wait on a page, of which `engine` is the bare decoding or the bare effect; then what it may take at most,
// and the most of the control's own memory during it beyond what it had before.
void MeasureWait(const std::string& name, const PageParts& page, const std::string& bare, double engine, int count,
                 const std::function<void()>& work, const std::function<void()>& prepare = {}) {
  std::vector<Part> parts;
  Times times;
  {
    const SystemCalls calls;
    times = SystemCalls::TimesOf(count, work, parts, prepare);
  }
  parts.push_back({bare, engine});
  times.Print(name, parts);
  if (prepare) prepare();
  const test::OwnMemory counted;
  const long long before = test::OwnMemory::Bytes();
  test::OwnMemory::ForgetPeak();
  work();
  const auto size = static_cast<double>(page.page.Stride()) * PageHeight;
  std::printf("    %.2f of %s + scratch file %.2f + 1.5 copies %.2f + canvas %.2f; peak %.2f copies of the page\n",
              times.Least() / page.Limit(engine), bare.c_str(), page.scratch, page.copies, page.painting,
              static_cast<double>(test::OwnMemory::Peak() - before) / size);
}

// A command by the button of that tool tip, or by the verb of that number.
struct Way {
  const char* effect;
  const char* toolTip;
  LONG verb = 0;
};

bool Run(const BenchedControl& editor, const Way& way) {
  if (way.toolTip != nullptr) return editor.Click(way.toolTip);
  editor.DoVerb(way.verb);
  return true;
}

constexpr std::array Ways{
    Way{"Invert", "Invert"},        Way{"GrayScale", "Grayscale"}, Way{"Lighten", "Lighten"},
    Way{"Darken", "Darken"},        Way{"Contrast", "Contrast"},   Way{"Colorize", "Colorize"},
    Way{"Sharpen", "Sharpen"},      Way{"Soften", "Soften"},       Way{"Blur", "Blur"},
    Way{"Emboss", "Emboss"},        Way{"Edge", "Edge"},           Way{"Dilate", "Dilate"},
    Way{"Erode", nullptr, 9},       Way{"Dither", "Dither"},       Way{"Threshold", "Threshold"},
    Way{"Rotate", nullptr, 4},      Way{"Resize", nullptr, 5},     Way{"HorizontalFlip", nullptr, 6},
    Way{"VerticalFlip", nullptr, 7}};

BOOL CALLBACK FindTip(HWND window, LPARAM found) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  if (std::wstring(name) != TOOLTIPS_CLASSW || IsWindowVisible(window) == FALSE) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

// From the mouse over the middle of a button until its tip shows, with the wait of the system, half a second.
void MeasureTip(const std::string& name, const test::ToolBarButton& button) {
  const POINT middle = button.Middle();
  HWND tip = nullptr;
  const double begin = Now();
  SetCursorPos(middle.x, middle.y);
  test::PumpUntil([&] {
    EnumThreadWindows(GetCurrentThreadId(), &FindTip, reinterpret_cast<LPARAM>(&tip));
    return tip != nullptr;
  });
  if (tip == nullptr) {
    std::printf("%s: none came\n", name.c_str());
    return;
  }
  const LRESULT wait = SendMessageW(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0);
  Times times;
  times.Add(Now() - begin);
  times.Print(name, {{"wait of the system", static_cast<double>(wait)}});
  SetCursorPos(0, 0);
  test::PumpUntil([&] { return IsWindowVisible(tip) == FALSE; });
}

}  // namespace

void Pages(int bitsPerPixel) {
  PrintHead("Pages of " + std::to_string(bitsPerPixel) + " bits");
  const BenchedControl editor;
  const std::wstring path = editor.Folder().File(L"page.tif");
  {
    PictureDocument maker;
    maker.Replace(PageOfDepth(bitsPerPixel));
    maker.Append(Narrow(path));
    maker.Append(Narrow(path));
  }
  editor.Open(path);
  editor.AwaitTools();
  if (!editor.Click("Next Page")) {
    std::puts("not measured: the control shows no pages");
    return;
  }
  const PageParts parts(bitsPerPixel, editor);
  bool isFirst = false;
  const auto turn = [&] {
    editor.Click(isFirst ? "Next Page" : "Previous Page");
    isFirst = !isFirst;
  };
  const double decoding = TimesOf(3, [&] { LoadPicture(Narrow(path)); }).Least();
  MeasureWait("page turn", parts, "decode", decoding, 5, turn);
  for (const Way& way : Ways) {
    const auto open = [&] { editor.Open(path); };
    const auto run = [&] { Run(editor, way); };
    open();
    if (!Run(editor, way)) {
      std::printf("%s: no button to click\n", way.effect);
      continue;
    }
    const double engine = parts.EngineTime(*FindEffect(way.effect));
    MeasureWait(way.effect, parts, "engine", engine, 3, run, open);
  }
}

void Drawing() {
  PrintHead("Drawing on a page of 24 bits");
  const BenchedControl editor;
  const std::wstring page = editor.Folder().File(L"page.bmp");
  PictureDocument maker;
  maker.Replace(PageOfDepth(24));
  maker.Save(Narrow(page));
  editor.Open(page);
  editor.AwaitTools();
  const auto buttons = test::ToolBarButtons(editor.Window());
  MeasureTip("the first tool tip", buttons.at("Zoom In"));
  MeasureTip("a later one", buttons.at("Clear"));
  constexpr int Points = 300;
  // What the bench itself takes between two points.
  const double idle = TimesOf(3, [&] {
                        const HWND canvas = editor.Canvas();
                        for (int i = 0; i < Points; ++i) {
                          SendMessageW(canvas, WM_NULL, 0, 0);
                          editor.Paint();
                        }
                      }).Least();
  const SystemCalls calls;
  const auto row = [&](const std::string& name, int count, const auto& work, std::vector<Part> more = {}) {
    std::vector<Part> parts;
    const Times times = SystemCalls::TimesOf(count, work, parts);
    parts.insert(parts.end(), more.begin(), more.end());
    times.Print(name, parts);
  };
  // What is drawn lies beside what was there, or a press would drag that.
  LONG top = 5;
  if (!editor.Choose("Pen")) std::puts("no pen: the strokes are none");
  row("a stroke of 300 painted points", 5,
      [&] {
        editor.Stroke({5, top}, Points, true, true);
        top += 60;
      },
      {{"the bench", idle}});
  if (!editor.Choose("Stamp")) std::puts("no stamp: the next row is none");
  int at = 50;
  row("a stamp, with its dialog", 3, [&] {
    editor.Press(600, at);
    at += 150;
  });
  bool isWide = false;
  row("a new size of the window", 9, [&] {
    isWide = !isWide;
    editor.Resize(isWide ? 880 : 900, isWide ? 600 : 640);
  });
  editor.Open(page);
  editor.AwaitTools();
  if (!editor.Choose("Pen")) std::puts("no pen: the layers are none");
  const auto layers = [&] { return test::TracedTimes(editor.Folder().Path(), "NewLayer"); };
  const int before = layers();
  row("1,000 strokes of 3 points", 1, [&] {
    for (int i = 0; i < 1000; ++i) editor.Stroke({10 + i % 40 * 20, 10 + i / 40 * 16}, 3, true, false);
    editor.Paint();
  });
  editor.Stroke({3, 3}, Points, true, true);
  editor.Stroke({3, 37}, Points, false, true);
  std::printf("    %d layers were made, the last two overlap\n", layers() - before);
  SetFocus(editor.Canvas());
  int last = test::TracedTimes(editor.Folder().Path(), "BringForward");
  test::SendKey(VK_CONTROL, false);
  row("restacking among them", 5, [&] {
    for (const WORD key : {WORD{'B'}, WORD{'F'}}) {
      test::SendKey(key, false);
      test::SendKey(key, true);
      editor.Paint();
    }
  });
  test::SendKey(VK_CONTROL, true);
  last = test::TracedTimes(editor.Folder().Path(), "BringForward") - last;
  if (last == 0) std::puts("    no layer was restacked: the row is none");
}

}  // namespace kw::bench
