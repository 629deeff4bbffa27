#pragma once

#include <windows.h>

namespace kw::activex {

// Registers the control and its type library. On failure it leaves nothing behind. E_ACCESSDENIED if the caller may not
// write to the registry.
HRESULT Register();

// Removes everything that Register writes; a missing key is no error.
HRESULT Unregister();

}  // namespace kw::activex
