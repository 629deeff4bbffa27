#include "windows/base/Module.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier): the linker gives it this name

namespace kw::windows {

HINSTANCE Module() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

}  // namespace kw::windows
