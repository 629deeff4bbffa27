// The built control in a container, from what the host or the user does to the painted frame. The pages are A4 at 300
// dpi, but for those of OpenFile. Peak: the most memory of the library's own at once, beyond what it had before.
//   kwocxbench [SECTION]

#include <ole2.h>

#include <array>
#include <cstdio>
#include <string_view>

#include "bench/Pages.h"
#include "bench/ocx/BenchedControl.h"
#include "picture/Depth.h"
#include "picture/PictureDocument.h"

namespace kw::bench {
namespace {

using test::Text;

const Bitmap& PageOfDepth(int bitsPerPixel) {
  static const Bitmap colours = Photograph();
  static const Bitmap greys = ToGreyLevels(ToDepth(colours, 8));
  static const Bitmap bits = FaxPage();
  return bitsPerPixel == 24 ? colours : bitsPerPixel == 8 ? greys : bits;
}

// Where the control's files are written from now on, as long as the folder lives.
void UseFolder(const BenchedControl& editor, const test::ScratchFolder& folder) {
  editor.Object().put_AppDir(Text(folder.Path()));
}

void Creation() {
  const test::ScratchFolder current;  // of the trace, as long as nobody has named another one
  const double begin = Now();
  test::Ocx::Library();
  Tell("load the library", Now() - begin);
  const auto create = [] { test::Ocx::Create().Reset(); };
  Measure("create: first", 1, create);
  Measure("create: later", 20, create);
}

void Properties() {
  const test::ScratchFolder folder;
  const BenchedControl editor;
  UseFolder(editor, folder);
  constexpr int Calls = 500;
  const std::wstring bare = folder.File(L"bare.txt");
  Measure("500 bare open, append, close", 9, [&] {
    for (int i = 0; i < Calls; ++i) {
      const HANDLE file = CreateFileW(bare.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
      DWORD written = 0;
      WriteFile(file, "Get MaxUndoLevels\r\n", 19, &written, nullptr);
      CloseHandle(file);
    }
  });
  Measure("500 traced property gets", 9, [&] {
    for (int i = 0; i < Calls; ++i) {
      std::int16_t value = 0;
      editor.Object().get_MaxUndoLevels(&value);
    }
  });
}

void Documents() {
  for (const int pages : {1, 5, 100, 1000}) {
    const test::ScratchFolder folder;
    const BenchedControl editor;
    UseFolder(editor, folder);
    const std::wstring path = folder.WriteTiff(L"document.tif", pages);
    Measure("OpenFile, " + std::to_string(pages) + " pages of 16 x 16", pages > 100 ? 3 : 9,
            [&] { editor.Open(path); });
  }
}

// The work of the control, and the most of its own memory meanwhile in copies of the page.
void MeasurePage(const std::string& name, int bitsPerPixel, const std::function<void()>& work) {
  Measure(name, 5, work);
  const auto page = static_cast<double>(PageOfDepth(bitsPerPixel).Stride()) * PageHeight;
  const long long before = test::OwnMemory::Bytes();
  test::OwnMemory::ForgetPeak();
  work();
  std::printf("%-34s %10.2f copies of the page\n", "  peak",
              static_cast<double>(test::OwnMemory::Peak() - before) / page);
}

void Pages(int bitsPerPixel) {
  const test::OwnMemory counted;
  const std::string depth = ", " + std::to_string(bitsPerPixel) + " bits";
  const test::ScratchFolder folder;
  const BenchedControl editor;
  UseFolder(editor, folder);
  const std::wstring path = folder.File(L"page.tif");
  {
    PictureDocument maker;
    maker.Replace(PageOfDepth(bitsPerPixel));
    const std::string name(path.begin(), path.end());
    maker.Append(name);
    maker.Append(name);
  }
  editor.Open(path);
  editor.AwaitTools();
  if (!editor.Click("Next Page")) {
    std::printf("pages%s: not measured, the control shows no pages\n", depth.c_str());
    return;
  }
  bool isFirst = false;
  MeasurePage("page turn" + depth, bitsPerPixel, [&] {
    editor.Click(isFirst ? "Next Page" : "Previous Page");
    isFirst = !isFirst;
  });
  constexpr std::array commands{"Invert", "Gray Scale", "Lighten", "Darken", "Contrast",        "Sharpen",
                                "Soften", "Blur",       "Emboss",  "Edge",   "Dilate",          "Erode",
                                "Dither", "Threshold",  "Rotate",  "Resize", "Flip Horizontal", "Flip Vertical"};
  for (const std::string command : commands) {
    editor.Open(path);
    if (editor.Click(command))
      MeasurePage(command + depth, bitsPerPixel, [&] { editor.Click(command); });
    else
      std::printf("%s%s: no button to click\n", command.c_str(), depth.c_str());
  }
}

void Drawing() {
  const test::ScratchFolder folder;
  const BenchedControl editor;
  UseFolder(editor, folder);
  const std::wstring page = folder.File(L"page.bmp");
  Write(PageOfDepth(24), page);
  editor.Open(page);
  editor.AwaitTools();
  if (!editor.Click("Pen")) std::puts("no pen: the strokes are none");
  Measure("a stroke of 300 painted points", 5, [&] { editor.Stroke(5, 5, 300, true); });
  Measure("1,000 strokes of 3 points", 1, [&] {
    for (int i = 0; i < 1000; ++i) editor.Stroke(i * 37 % 600, i * 53 % 400, 3, false);
    editor.Paint();
  });
  bool isWide = false;
  Measure("a new size of the window", 9, [&] {
    isWide = !isWide;
    SetWindowPos(editor.Window(), nullptr, 0, 0, isWide ? 880 : 900, isWide ? 600 : 640, SWP_NOMOVE | SWP_NOZORDER);
    editor.Paint();
  });
}

void Pictures() {
  const test::ScratchFolder folder;
  const BenchedControl editor;
  UseFolder(editor, folder);
  const std::wstring page = folder.File(L"page.bmp");
  const std::wstring photograph = folder.File(L"photograph.jpg");
  Write(PageOfDepth(1), page);
  Write(PageOfDepth(24), photograph);
  editor.Open(page);
  Measure("BGImage, JPEG of 24 bits", 5, [&] {
    editor.Object().put_BGImage(Text(photograph));
    editor.Paint();
  });
  Measure("SignatureFilePath, the same", 5, [&] {
    editor.Object().put_SignatureFilePath(Text(photograph));
    editor.Paint();
  });
}

void Run(std::string_view section) {
  const auto isAsked = [&](std::string_view name) { return section.empty() || section == name; };
  std::printf("%-34s %10s %10s %10s\n", "milliseconds", "least", "middle", "most");
  if (isAsked("creation")) Creation();
  if (isAsked("properties")) Properties();
  if (isAsked("documents")) Documents();
  for (const int bits : {1, 8, 24}) {
    if (isAsked("pages")) Pages(bits);
  }
  if (isAsked("drawing")) Drawing();
  if (isAsked("pictures")) Pictures();
}

}  // namespace
}  // namespace kw::bench

int main(int count, char** arguments) {
  if (FAILED(OleInitialize(nullptr))) return 1;
  kw::bench::Run(count > 1 ? arguments[1] : "");
  OleUninitialize();
  return 0;
}
