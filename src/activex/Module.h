#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace kw::activex::Module {

// The library that holds this code.
HINSTANCE Instance();
void SetInstance(HINSTANCE instance);
// Its full path, however long it is.
std::wstring Path();

// Objects and locks that keep the library in memory.
void Lock();
void Unlock();
bool IsUnused();

// The embedded type library, and the description of one interface or class in it. They need no registration.
HRESULT LoadLibraryOfTypes(ITypeLib** library);
HRESULT LoadTypeInfo(REFGUID guid, ITypeInfo** info);

}  // namespace kw::activex::Module
