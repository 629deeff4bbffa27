#include <io.h>
#include <windows.h>

#include "Platform.h"
#include "components/base/Unicode.h"

namespace kw {

bool IsTerminal(std::FILE* file) {
  // A character device may also be the null device; a console has a mode.
  DWORD mode = 0;
  return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))), &mode) != 0;
}

}  // namespace kw

int wmain(int count, wchar_t** values) {
  SetConsoleOutputCP(CP_UTF8);
  kw::Arguments arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(kw::Utf8FromUtf16(reinterpret_cast<const char16_t*>(values[i])));
  }
  return kw::RunProgram(arguments);
}
