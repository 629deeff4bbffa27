// The system's dialogs for files, colours, fonts and printers.

#include <windows.h>

#include <commdlg.h>
#include <winspool.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "components/base/RunTimeError.h"
#include "windows/WindowsDesktop.h"
#include "windows/base/Text.h"
#include "windows/printing/Printer.h"

namespace kw::windows {
namespace {

// The filter in the system's format: each part ends in a null character, the last one in two.
std::wstring SystemFilter(const std::string& filter) {
  std::wstring parts = ToWide(filter);
  std::replace(parts.begin(), parts.end(), L'|', L'\0');
  parts += L'\0';
  return parts;
}

// Converts a font size in points to a height in screen pixels, and back.
LONG HeightOfPoints(float points, int perInch) { return -std::lround(points * static_cast<float>(perInch) / 72); }

int ScreenPixelsPerInch() {
  const HDC screen = GetDC(nullptr);
  const int perInch = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return perInch;
}

bool HasPrinter() {
  DWORD bytes = 0;
  DWORD count = 0;
  EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 4, nullptr, 0, &bytes, &count);
  return bytes != 0;
}

}  // namespace

bool WindowsDesktop::ShowOpen(OpenDialog& dialog) {
  const auto whileUp = EnterDialog();
  const std::wstring filter = SystemFilter(dialog.filter);
  std::vector<wchar_t> name(32768);
  const std::wstring offered = ToWide(dialog.fileName);
  if (offered.size() < name.size()) std::copy(offered.begin(), offered.end(), name.begin());
  OPENFILENAMEW fields = {};
  fields.lStructSize = sizeof fields;
  fields.hwndOwner = TopLevelOwner();
  fields.lpstrFilter = filter.c_str();
  fields.nFilterIndex = static_cast<DWORD>(dialog.filterIndex);
  fields.lpstrFile = name.data();
  fields.nMaxFile = static_cast<DWORD>(name.size());
  fields.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR;
  if (dialog.isReadOnlyBoxHidden) fields.Flags |= OFN_HIDEREADONLY;
  if (GetOpenFileNameW(&fields) == FALSE) return false;
  dialog.fileName = FromWide(name.data());
  dialog.filterIndex = static_cast<int>(fields.nFilterIndex);
  return true;
}

bool WindowsDesktop::ShowColor(Colour& colour) {
  const auto whileUp = EnterDialog();
  static std::array<COLORREF, 16> customColours = {};  // kept from dialog to dialog
  CHOOSECOLORW fields = {};
  fields.lStructSize = sizeof fields;
  fields.hwndOwner = TopLevelOwner();
  fields.rgbResult = colour;
  fields.lpCustColors = customColours.data();
  fields.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
  if (ChooseColorW(&fields) == FALSE) return false;
  colour = fields.rgbResult;
  return true;
}

bool WindowsDesktop::ShowFont(Font& font) {
  const auto whileUp = EnterDialog();
  LOGFONTW description = {};
  const std::wstring name = ToWide(font.name).substr(0, LF_FACESIZE - 1);
  std::copy(name.begin(), name.end(), static_cast<wchar_t*>(description.lfFaceName));
  description.lfHeight = HeightOfPoints(font.size, ScreenPixelsPerInch());
  description.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  description.lfItalic = static_cast<BYTE>(font.italic);
  description.lfUnderline = static_cast<BYTE>(font.underline);
  description.lfStrikeOut = static_cast<BYTE>(font.strikeThrough);
  description.lfCharSet = DEFAULT_CHARSET;
  CHOOSEFONTW fields = {};
  fields.lStructSize = sizeof fields;
  fields.hwndOwner = TopLevelOwner();
  fields.lpLogFont = &description;
  fields.Flags = CF_SCREENFONTS | CF_EFFECTS | CF_INITTOLOGFONTSTRUCT | CF_FORCEFONTEXIST;
  if (ChooseFontW(&fields) == FALSE) return false;
  font.name = FromWide(static_cast<const wchar_t*>(description.lfFaceName));
  font.size = static_cast<float>(fields.iPointSize) / 10;
  font.bold = description.lfWeight >= FW_BOLD;
  font.italic = description.lfItalic != 0;
  font.underline = description.lfUnderline != 0;
  font.strikeThrough = description.lfStrikeOut != 0;
  return true;
}

bool WindowsDesktop::ShowPrinter(PrinterDialog& dialog) {
  const auto whileUp = EnterDialog();
  // Raise before the dialog: it would report the missing printer a second time.
  if (!HasPrinter()) Raise(ErrorNumber::PrinterError, ERROR_PRINTER_NOT_FOUND);
  const auto page = [](std::int32_t number) { return static_cast<WORD>(std::clamp(number, 1, 0xFFFF)); };
  PRINTDLGW fields = {};
  fields.lStructSize = sizeof fields;
  fields.hwndOwner = TopLevelOwner();
  fields.Flags = PD_RETURNDC | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
  if (dialog.lastPage > dialog.firstPage)
    fields.Flags |= PD_PAGENUMS;
  else
    fields.Flags |= PD_NOPAGENUMS;
  fields.nMinPage = page(dialog.firstPage);
  fields.nMaxPage = page(dialog.lastPage);
  fields.nFromPage = page(dialog.fromPage);
  fields.nToPage = page(dialog.toPage);
  fields.nCopies = page(dialog.copies);
  const BOOL chosen = PrintDlgW(&fields);
  if (fields.hDevMode != nullptr) GlobalFree(fields.hDevMode);
  if (fields.hDevNames != nullptr) GlobalFree(fields.hDevNames);
  if (chosen == FALSE) {
    const DWORD error = CommDlgExtendedError();
    if (error != 0) Raise(ErrorNumber::PrinterError, static_cast<std::int32_t>(error));
    return false;
  }
  printer->Use(fields.hDC, ToWide(dialog.document));
  const bool isRange = (fields.Flags & PD_PAGENUMS) != 0;
  dialog.fromPage = isRange ? fields.nFromPage : fields.nMinPage;
  dialog.toPage = isRange ? fields.nToPage : fields.nMaxPage;
  dialog.copies = fields.nCopies;
  return true;
}

}  // namespace kw::windows
