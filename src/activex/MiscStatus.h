#pragma once

#include <windows.h>

#include <oleidl.h>

namespace kw::activex {

// The control's OLEMISC flags, both for GetMiscStatus and for the registry.
inline constexpr DWORD MiscStatus = OLEMISC_RECOMPOSEONRESIZE  // it lays itself out anew instead of being stretched
                                    | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                    OLEMISC_SETCLIENTSITEFIRST;

// The control's display name.
inline constexpr wchar_t UserTypeName[] = L"Kw image annotation editor";

}  // namespace kw::activex
