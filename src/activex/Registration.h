#pragma once

#include <windows.h>

namespace kw::activex {

// Enters the control, its names and its type library into the registry. On failure nothing is left behind.
// E_ACCESSDENIED where the caller may not write there.
HRESULT Register();

// Removes all that Register writes; what is not there any more is no error.
HRESULT Unregister();

}  // namespace kw::activex
