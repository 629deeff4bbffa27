#pragma once

#include <windows.h>

namespace kw::activex {

// For whom a control is registered: for all users, which takes an administrator's rights, or for the calling user.
enum class Users : unsigned char { All, Current };

// Registers the control, its property page and its type library for this architecture. On failure it leaves nothing of
// them behind. E_ACCESSDENIED if the caller may not write to the registry.
HRESULT Register(Users users);

// Removes everything that Register writes; a missing key is no error. What both architectures share stays while the
// control is registered for the other one.
HRESULT Unregister(Users users);

}  // namespace kw::activex
