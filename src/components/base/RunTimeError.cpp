#include "components/base/RunTimeError.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kw {
namespace {

struct Row {
  ErrorNumber number;
  const char* text;
};

constexpr std::array Rows{
    Row{ErrorNumber::InvalidProcedureCall, "Invalid procedure call or argument"},
    Row{ErrorNumber::Overflow, "Overflow"},
    Row{ErrorNumber::OutOfMemory, "Out of memory"},
    Row{ErrorNumber::SubscriptOutOfRange, "Subscript out of range"},
    Row{ErrorNumber::DivisionByZero, "Division by zero"},
    Row{ErrorNumber::TypeMismatch, "Type mismatch"},
    Row{ErrorNumber::InternalError, "Internal error"},
    Row{ErrorNumber::FileNotFound, "File not found"},
    Row{ErrorNumber::DeviceIoError, "Device I/O error"},
    Row{ErrorNumber::DiskFull, "Disk full"},
    Row{ErrorNumber::PermissionDenied, "Permission denied"},
    Row{ErrorNumber::PathFileAccessError, "Path/File access error"},
    Row{ErrorNumber::PathNotFound, "Path not found"},
    Row{ErrorNumber::ObjectVariableNotSet, "Object variable or With block variable not set"},
    Row{ErrorNumber::ControlArrayElementDoesNotExist, "Control array element doesn't exist"},
    Row{ErrorNumber::InvalidControlArrayIndex, "Invalid control array index"},
    Row{ErrorNumber::ObjectAlreadyLoaded, "Object already loaded"},
    Row{ErrorNumber::CannotLoadOrUnload, "Can't load or unload this object"},
    Row{ErrorNumber::CannotUnloadDesignTimeControl, "Can't unload controls created at design time"},
    Row{ErrorNumber::InvalidPropertyValue, "Invalid property value"},
    Row{ErrorNumber::CannotCreateOffScreenImage, "Can't create AutoRedraw image"},
    Row{ErrorNumber::InvalidPicture, "Invalid picture"},
    Row{ErrorNumber::PrinterError, "Printer error"},
    Row{ErrorNumber::MethodNotApplicable, "Object doesn't support this property or method"},
    Row{ErrorNumber::InvalidClipboardFormat, "Invalid Clipboard format"},
    Row{ErrorNumber::CannotOpenClipboard, "Can't open Clipboard"},
    Row{ErrorNumber::ElementNotFound, "Element not found"},
    Row{ErrorNumber::Cancelled, "Cancel was selected."},
};

}  // namespace

std::string ErrorDescription(std::int32_t number) {
  const auto* row = std::find_if(Rows.begin(), Rows.end(),
                                 [number](const Row& r) { return static_cast<std::int32_t>(r.number) == number; });
  return row != Rows.end() ? row->text : "Application-defined or object-defined error";
}

RunTimeError::RunTimeError(ErrorNumber known)
    : RunTimeError(static_cast<std::int32_t>(known), ErrorDescription(static_cast<std::int32_t>(known))) {}

RunTimeError::RunTimeError(std::int32_t errorNumber, std::string text, std::int32_t systemError, std::string sourceName)
    : number(errorNumber), description(std::move(text)), lastDllError(systemError), source(std::move(sourceName)) {}

void Raise(ErrorNumber number, std::int32_t lastDllError) {
  const auto plain = static_cast<std::int32_t>(number);
  throw RunTimeError(plain, ErrorDescription(plain), lastDllError);
}

void RaiseMissingElement(std::int32_t index) {
  throw RunTimeError(static_cast<std::int32_t>(ErrorNumber::ControlArrayElementDoesNotExist),
                     "Control array element '" + std::to_string(index) + "' doesn't exist");
}

}  // namespace kw
