#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

#include "activex/KwEditor.h"
#include "tests/support/win32/ChildWindows.h"

namespace kw::test {

using Microsoft::WRL::ComPtr;

// The control's library as the build made it, loaded without any registration.
namespace Ocx {

std::wstring Path();
HMODULE Library();
ComPtr<IClassFactory> Factory(REFCLSID classId = CLSID_KwEditorLayers);
// A new control; fails the test and returns null if it cannot be made.
ComPtr<_KwEditorLayers> Create();
// Whether the library says that nobody uses it.
bool CanUnload();
// The folder of a control belongs to its thread: it would stay for the thread's next control, when it may be gone.
void ForgetFolder();

}  // namespace Ocx

// A folder of its own for one test, current while it lives, with a backslash at the end of its path.
class ScratchFolder {
public:
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  const std::wstring& Path() const { return path; }
  std::wstring File(const std::wstring& name) const { return path + name; }
  // An uncompressed TIFF of so many pages, 16 pixels wide and 16 high, as small as such a file can be.
  std::wstring WriteTiff(const std::wstring& name, int pages) const;
  // A BMP of 24 bits with these colours, which are asked for with the column and the row.
  std::wstring WriteBitmap(const std::wstring& name, int width, int height,
                           const std::function<COLORREF(int, int)>& colourAt) const;

private:
  std::wstring path;
  std::wstring former;
};

bool FileExists(const std::wstring& path);

// How often the control's trace in that folder has a line.
int TracedTimes(const std::wstring& folder, const std::string& name);

// A BSTR for one call.
class Text {
public:
  explicit Text(const std::wstring& text) : value(SysAllocString(text.c_str())) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(value); }
  // NOLINTNEXTLINE(google-explicit-constructor): stands for the string in a call that takes one
  operator BSTR() const { return value; }

private:
  BSTR value;
};

// The text of a returned BSTR, which it frees.
std::wstring Take(BSTR text);

}  // namespace kw::test
