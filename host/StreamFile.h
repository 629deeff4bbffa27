#pragma once

#include <windows.h>

#include <objidl.h>

#include <functional>
#include <string>

namespace kw::host {

// Lets `write` fill a file, which takes the place of an older one when all of it is there.
HRESULT WriteFileByStream(const std::wstring& path, const std::function<HRESULT(IStream&)>& write);

}  // namespace kw::host
