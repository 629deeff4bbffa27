#pragma once

#include <windows.h>

namespace kw::windows {

// The DLL or executable that holds this code.
HINSTANCE Module();

}  // namespace kw::windows
