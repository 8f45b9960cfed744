#include "base/runtime_error.h"

namespace quillet {
namespace {

const char* Text(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::InvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return "Overflow";
    case ErrorNumber::OutOfMemory:
      return "Out of memory";
    case ErrorNumber::SubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::LibraryNotLoaded:
      return "Error in loading DLL";
    case ErrorNumber::DiskFull:
      return "Disk full";
    case ErrorNumber::PermissionDenied:
      return "Permission denied";
    case ErrorNumber::FileNotFound:
      return "File not found";
    case ErrorNumber::PathFileAccess:
      return "Path/File access error";
    case ErrorNumber::PathNotFound:
      return "Path not found";
    case ErrorNumber::InvalidPropertyValue:
      return "Invalid property value";
    case ErrorNumber::MemberNotSupported:
      return "Object doesn't support this property or method";
    case ErrorNumber::AutomationError:
      return "Automation error";
    case ErrorNumber::ActionNotSupported:
      return "Object doesn't support this action";
    case ErrorNumber::WrongNumberOfArguments:
      return "Wrong number of arguments or invalid property assignment";
    case ErrorNumber::InvalidPicture:
      return "Invalid picture";
  }
  return "Application-defined or object-defined error";
}

}  // namespace

RunTimeError::RunTimeError(ErrorNumber number)
    : std::runtime_error(Text(number)), m_number(number) {}

RunTimeError::RunTimeError(ErrorNumber number, const std::string& detail)
    : std::runtime_error(std::string(Text(number)) + " (" + detail + ")"), m_number(number) {}

RunTimeError::RunTimeError(ErrorNumber number, const std::string& text, InFull)
    : std::runtime_error(text), m_number(number) {}

RunTimeError RunTimeError::Told(ErrorNumber number, const std::string& text) {
  return text.empty() ? RunTimeError(number) : RunTimeError(number, text, InFull{});
}

}  // namespace quillet
