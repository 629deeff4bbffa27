#pragma once

#include <windows.h>

#include <oleidl.h>

namespace kw::activex {

// How the control behaves in a container, in its answer to GetMiscStatus and in the registry alike.
inline constexpr DWORD MiscStatus = OLEMISC_RECOMPOSEONRESIZE  // it lays itself out anew, it is not stretched
                                    | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                    OLEMISC_SETCLIENTSITEFIRST;

// The name of the control for people.
inline constexpr wchar_t UserTypeName[] = L"Kw image annotation editor";

}  // namespace kw::activex
