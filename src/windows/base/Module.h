#pragma once

#include <windows.h>

namespace kw::windows {

// The DLL or executable that contains this code.
HINSTANCE Module();

}  // namespace kw::windows
