#pragma once

#include <stdexcept>
#include <string>

namespace quillet {

// The numbers by which hosts know run-time errors (a COM host sees 0x800A0000 + number).
enum class ErrorNumber : int {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  LibraryNotLoaded = 48,
  FileNotFound = 53,
  DiskFull = 61,
  PermissionDenied = 70,
  PathFileAccess = 75,
  PathNotFound = 76,
  InvalidPropertyValue = 380,
  MemberNotSupported = 438,
  AutomationError = 440,
  ActionNotSupported = 445,
  WrongNumberOfArguments = 450,
  InvalidPicture = 481,
};

// The one exception type for errors that reach the host. `what()` is the number's fixed text,
// followed by a detail in parentheses where one helps.
class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(ErrorNumber number);
  RunTimeError(ErrorNumber number, const std::string& detail);
  // An error as another component told it, in its words.
  static RunTimeError Told(ErrorNumber number, const std::string& text);

  ErrorNumber Number() const noexcept { return m_number; }

 private:
  struct InFull {};
  RunTimeError(ErrorNumber number, const std::string& text, InFull);

  ErrorNumber m_number;
};

}  // namespace quillet
