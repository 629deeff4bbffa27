// What a host waits for: the control itself, its properties, documents and pictures.

#include <windows.h>

#include <string>

#include "bench/Pages.h"
#include "bench/ocx/BenchedControl.h"
#include "bench/ocx/Sections.h"
#include "bench/ocx/SystemCalls.h"
#include "bench/ocx/Table.h"
#include "picture/Depth.h"
#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"

namespace kw::bench {
namespace {

using test::Text;

void AddCreation(const std::string& name, int count) {
  Times all;
  BenchedControl::Creation least;
  for (int i = 0; i < count; ++i) {
    const BenchedControl editor;
    all.Add(editor.Made().Sum());
    if (i == 0 || editor.Made().Sum() < least.Sum()) least = editor.Made();
  }
  all.Print(name, {{"CreateInstance", least.create},
                   {"site and extent", least.take},
                   {"windows", least.activate},
                   {"painting", least.paint}});
}

double DecodingOf(const std::wstring& path) {
  return TimesOf(3, [&] { LoadPicture(std::string(path.begin(), path.end())); }).Least();
}

}  // namespace

const Bitmap& PageOfDepth(int bitsPerPixel) {
  static const Bitmap colours = Photograph();
  static const Bitmap greys = ToGreyLevels(ToDepth(colours, 8));
  static const Bitmap bits = FaxPage();
  return bitsPerPixel == 24 ? colours : bitsPerPixel == 8 ? greys : bits;
}

void Creation() {
  PrintHead("Creation");
  const test::ScratchFolder current;  // of the trace, as long as nobody has named another one
  Measure("load the library", 1, [] { test::Ocx::Library(); });
  AddCreation("creation to first painting, first", 1);
  AddCreation("creation to first painting, later", 9);
  const SystemCalls calls;
  std::vector<Part> parts;
  const Times whole = SystemCalls::TimesOf(
      5, [] { BenchedControl(); }, parts);
  whole.Print("a life, its calls of the system", parts);
}

void Properties() {
  PrintHead("1,000 calls");
  const BenchedControl editor;
  constexpr int Calls = 1000;
  const std::wstring bare = editor.Folder().File(L"bare.txt");
  const auto append = [&](bool isLocked) {
    for (int i = 0; i < Calls; ++i) {
      const HANDLE file =
          CreateFileW(bare.c_str(), FILE_APPEND_DATA | FILE_READ_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
      OVERLAPPED place = {};
      place.OffsetHigh = 0x7FFFFFFF;
      if (isLocked) LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place);
      DWORD written = 0;
      WriteFile(file, "Get MaxUndoLevels\r\n", 19, &written, nullptr);
      CloseHandle(file);
    }
  };
  Times bareTimes;
  Times lockedTimes;
  Times traced;
  for (int turn = 0; turn < 9; ++turn) {
    bareTimes.Add(TimesOf(1, [&] { append(false); }).Least());
    lockedTimes.Add(TimesOf(1, [&] { append(true); }).Least());
    traced.Add(TimesOf(1, [&] {
                 for (int i = 0; i < Calls; ++i) {
                   std::int16_t value = 0;
                   editor.Object().get_MaxUndoLevels(&value);
                 }
               }).Least());
  }
  bareTimes.Print("bare open, append, close");
  traced.Print("traced property gets",
               {{"bare", bareTimes.Least()}, {"lock of writers", lockedTimes.Least() - bareTimes.Least()}});
}

void Documents() {
  PrintHead("OpenFile, pages of 16 x 16");
  for (const int pages : {1, 5, 100, 1000}) {
    const BenchedControl editor;
    const std::wstring path = editor.Folder().WriteTiff(L"document.tif", pages);
    const double decoding = DecodingOf(path);
    const SystemCalls calls;
    std::vector<Part> parts;
    const Times times = SystemCalls::TimesOf(
        5, [&] { editor.Open(path); }, parts);
    parts.push_back({"decode", decoding});
    times.Print(std::to_string(pages) + " pages", parts);
  }
}

void Pictures() {
  PrintHead("Pictures, a JPEG of 24 bits");
  const BenchedControl editor;
  const std::wstring page = editor.Folder().File(L"page.bmp");
  const std::wstring photograph = editor.Folder().File(L"photograph.jpg");
  PictureDocument maker;
  maker.Replace(PageOfDepth(1));
  maker.Save(std::string(page.begin(), page.end()));
  maker.Replace(PageOfDepth(24));
  maker.Save(std::string(photograph.begin(), photograph.end()));
  const double decoding = DecodingOf(photograph);
  editor.Open(page);
  editor.AwaitTools();
  const SystemCalls calls;
  const auto assign = [&](const char* name, const auto& put) {
    std::vector<Part> parts;
    const auto work = [&] {
      put();
      editor.Paint();
    };
    const Times times = SystemCalls::TimesOf(5, work, parts);
    parts.push_back({"decode", decoding});
    times.Print(name, parts);
  };
  assign("BGImage", [&] { editor.Object().put_BGImage(Text(photograph)); });
  assign("SignatureFilePath", [&] { editor.Object().put_SignatureFilePath(Text(photograph)); });
}

}  // namespace kw::bench
