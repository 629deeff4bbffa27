#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace kw {

// Numbers of the run-time errors that the editor and its components raise.
enum class ErrorNumber : std::int32_t {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  InternalError = 51,
  FileNotFound = 53,
  DeviceIoError = 57,
  DiskFull = 61,
  PermissionDenied = 70,
  PathFileAccessError = 75,
  PathNotFound = 76,
  ObjectVariableNotSet = 91,
  ControlArrayElementDoesNotExist = 340,
  InvalidControlArrayIndex = 341,
  ObjectAlreadyLoaded = 360,
  CannotLoadOrUnload = 361,
  CannotUnloadDesignTimeControl = 362,
  InvalidPropertyValue = 380,
  CannotCreateOffScreenImage = 480,
  InvalidPicture = 481,
  PrinterError = 482,
  MethodNotApplicable = 438,
  InvalidClipboardFormat = 461,
  CannotOpenClipboard = 521,
  ElementNotFound = 35601,
  Cancelled = 32755,
};

// The one exception type of the editor: an error as the run time describes it.
class RunTimeError : public std::exception {
public:
  // The description is the run time's own text for `known`, the source is the editor's project name.
  explicit RunTimeError(ErrorNumber known);
  // `systemError` is the system's last error code at the moment of the failure (0 if no system call failed).
  RunTimeError(std::int32_t errorNumber, std::string text, std::int32_t systemError = 0,
               std::string sourceName = "KwEditor");

  std::int32_t Number() const { return number; }
  const std::string& Description() const { return description; }
  std::int32_t LastDllError() const { return lastDllError; }
  const std::string& Source() const { return source; }
  const char* what() const noexcept override { return description.c_str(); }

private:
  std::int32_t number;
  std::string description;
  std::int32_t lastDllError = 0;
  std::string source;
};

// The run time's text for a number; "Application-defined or object-defined error" for one that it does not know.
std::string ErrorDescription(std::int32_t number);

// Throws the run-time error `number` with its standard description, and `lastDllError` if a system call failed.
[[noreturn]] void Raise(ErrorNumber number, std::int32_t lastDllError = 0);

// Control-array errors carry the index in their text.
[[noreturn]] void RaiseMissingElement(std::int32_t index);

}  // namespace kw
