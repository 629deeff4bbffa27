#include "tests/activex/Ocx.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"

namespace kw::test {
namespace {

std::wstring ProgramPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

template <class Procedure>
Procedure Find(const char* name) {
  return reinterpret_cast<Procedure>(reinterpret_cast<void*>(GetProcAddress(Ocx::Library(), name)));
}

}  // namespace

// The test programs lie in a folder of the build folder.
std::wstring Ocx::Path() {
  return (std::filesystem::path(ProgramPath()).parent_path().parent_path() / L"KwEditor.ocx").wstring();
}

HMODULE Ocx::Library() {
  static const HMODULE library = LoadLibraryW(Path().c_str());
  return library;
}

ComPtr<IClassFactory> Ocx::Factory(REFCLSID classId) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  ComPtr<IClassFactory> factory;
  const auto get = Find<GetClassObject>("DllGetClassObject");
  if (get == nullptr) {
    ADD_FAILURE() << "no DllGetClassObject; last error " << GetLastError();
  } else {
    EXPECT_HRESULT_SUCCEEDED(get(classId, IID_PPV_ARGS(&factory)));
  }
  return factory;
}

ComPtr<_KwEditorLayers> Ocx::Create() {
  ComPtr<_KwEditorLayers> control;
  if (const auto factory = Factory()) {
    EXPECT_HRESULT_SUCCEEDED(factory->CreateInstance(nullptr, IID_PPV_ARGS(&control)));
  }
  return control;
}

bool Ocx::CanUnload() {
  using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
  return Find<CanUnloadNow>("DllCanUnloadNow")() == S_OK;
}

void Ocx::ForgetFolder() {
  if (const auto control = Create()) control->put_AppDir(nullptr);
}

ScratchFolder::ScratchFolder() {
  static int count = 0;
  former = std::filesystem::current_path().wstring();
  // The number of a process comes again, and a run that was killed leaves its folders.
  std::filesystem::path folder;
  do {
    const std::wstring name = L"kw-activex-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
    folder = RoomForTests() / name;
  } while (!std::filesystem::create_directory(folder));
  std::filesystem::current_path(folder);
  path = folder.wstring() + L"\\";
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::current_path(former, ignored);
  std::filesystem::remove_all(path, ignored);
}

std::wstring ScratchFolder::WriteTiff(const std::wstring& name, int pages) const {
  constexpr std::uint32_t Width = 16;
  constexpr std::uint32_t Height = 16;
  constexpr std::uint32_t PixelBytes = Width * Height / 8;
  std::string bytes = "II";
  const auto put = [&](std::uint32_t number, int count) {
    for (int index = 0; index < count; ++index) bytes.push_back(static_cast<char>((number >> (8 * index)) & 0xFFU));
  };
  const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
    put(tag, 2);
    put(type, 2);
    put(1, 4);
    put(value, 4);
  };
  put(42, 2);
  put(8, 4);
  for (int page = 1; page <= pages; ++page) {
    constexpr std::uint32_t EntryCount = 9;
    const auto directory = static_cast<std::uint32_t>(bytes.size());
    const std::uint32_t pixels = directory + 2 + 12 * EntryCount + 4;
    put(EntryCount, 2);
    entry(256, 4, Width);
    entry(257, 4, Height);
    entry(258, 3, 1);       // bits per sample
    entry(259, 3, 1);       // not compressed
    entry(262, 3, 1);       // 0 is black
    entry(273, 4, pixels);  // the only strip
    entry(277, 3, 1);       // samples per pixel
    entry(278, 4, Height);  // rows per strip
    entry(279, 4, PixelBytes);
    put(page == pages ? 0 : pixels + PixelBytes, 4);
    for (std::uint32_t index = 0; index < PixelBytes; ++index) put(static_cast<std::uint32_t>(page) * 37U + index, 1);
  }
  std::ofstream(std::filesystem::path(File(name)), std::ios::binary).write(bytes.data(), std::ssize(bytes));
  return File(name);
}

std::wstring ScratchFolder::WriteBitmap(const std::wstring& name, int width, int height,
                                        const std::function<COLORREF(int, int)>& colourAt) const {
  const auto stride = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
  std::string pixels(stride * static_cast<std::size_t>(height), '\0');
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const COLORREF colour = colourAt(x, y);
      const std::size_t at = stride * static_cast<std::size_t>(height - 1 - y) + static_cast<std::size_t>(x) * 3;
      pixels[at] = static_cast<char>(GetBValue(colour));
      pixels[at + 1] = static_cast<char>(GetGValue(colour));
      pixels[at + 2] = static_cast<char>(GetRValue(colour));
    }
  }
  BITMAPFILEHEADER file = {};
  const BITMAPINFOHEADER info = {sizeof info, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof file + sizeof info;
  file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
  std::ofstream out(std::filesystem::path(File(name)), std::ios::binary);
  out.write(reinterpret_cast<const char*>(&file), sizeof file);
  out.write(reinterpret_cast<const char*>(&info), sizeof info);
  out << pixels;
  return File(name);
}

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

int TracedTimes(const std::wstring& folder, const std::string& name) {
  std::ifstream trace(std::filesystem::path(folder + L"FunctionsInExecution.txt"), std::ios::binary);
  int times = 0;
  for (std::string line; std::getline(trace, line);) times += line == name + "\r" ? 1 : 0;
  return times;
}

std::wstring Take(BSTR text) {
  std::wstring taken(text == nullptr ? L"" : text, SysStringLen(text));
  SysFreeString(text);
  return taken;
}

}  // namespace kw::test
