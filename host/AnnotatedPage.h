#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>

namespace kw::host {

// What the user sees on the page, with all layers, as the control gives it through IDataObject.

// Whether a page is open.
bool HasAnnotatedPage(IUnknown& control);
// Writes it as a TIFF file.
HRESULT SaveAnnotatedPage(IUnknown& control, const std::wstring& path);
// Puts it on the clipboard, in every format that the control has.
HRESULT CopyAnnotatedPage(IUnknown& control);

}  // namespace kw::host
