#pragma once

#include <windows.h>

#include <objidl.h>

#include <functional>
#include <vector>

#include "annotated/AnnotatedPage.h"

namespace kw::activex {

// The formats and media in which the annotated page is given, the one with the most to offer to other programs first.
std::vector<FORMATETC> PageFormats();

// S_OK if the page is given in that format and on one of those media, else what is wrong.
HRESULT CheckPageFormat(const FORMATETC& format);

// Makes the data. The format has to be one of the above, and the page must not be empty. STG_E_MEDIUMFULL if the data
// would take more memory than a page may have.
HRESULT GivePage(const AnnotatedPage& page, const FORMATETC& format, STGMEDIUM& medium);

// As above, on the caller's medium: writes to a stream from its position on, leaving it behind the data, or to a block
// of memory. STG_E_MEDIUMFULL if the medium is too small.
HRESULT GivePageHere(const AnnotatedPage& page, const FORMATETC& format, const STGMEDIUM& medium);

// Fills `bounds` with the page. E_ABORT if `goesOn` says so between two bands; E_FAIL if the device refuses.
HRESULT DrawPage(const AnnotatedPage& page, HDC context, const RECT& bounds, const std::function<bool()>& goesOn);

// The page's size on paper; a page without a resolution has 96 pixels to the inch.
SIZEL PageExtent(const AnnotatedPage& page);

}  // namespace kw::activex
