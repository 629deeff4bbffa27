#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace kw::activex::Module {

// The DLL that holds this code.
HINSTANCE Instance();
void SetInstance(HINSTANCE instance);
// The DLL's full path, of any length.
std::wstring Path();

// Lock counts an object or a server lock that keeps the DLL loaded; Unlock takes it back.
void Lock();
void Unlock();
bool IsUnused();

// The embedded type library, and the type information of one interface or class in it. Neither needs registration.
HRESULT LoadLibraryOfTypes(ITypeLib** library);
HRESULT LoadTypeInfo(REFGUID guid, ITypeInfo** info);

}  // namespace kw::activex::Module
