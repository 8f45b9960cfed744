#include "platform/portable/file_errors.h"

#include <sys/stat.h>

#include <cerrno>

#include "base/runtime_error.h"

namespace quillet {
namespace {

// Run-time error 76 when the folder that the name lies in is not there, else 53.
ErrorNumber WhatIsMissing(const std::string& fileName) {
  const std::size_t slash = fileName.rfind('/');
  if (slash == std::string::npos) return ErrorNumber::FileNotFound;
  struct stat folder;
  const bool isFolder =
      stat(fileName.substr(0, slash + 1).c_str(), &folder) == 0 && S_ISDIR(folder.st_mode);
  return isFolder ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound;
}

}  // namespace

void ThrowFileError(const std::string& fileName, int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      throw RunTimeError(WhatIsMissing(fileName), fileName);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      throw RunTimeError(ErrorNumber::DiskFull, fileName);
    case EACCES:
    case EPERM:
    case EROFS:
      throw RunTimeError(ErrorNumber::PermissionDenied, fileName);
    default:
      throw RunTimeError(ErrorNumber::PathFileAccess, fileName);
  }
}

void RequireFileName(const std::string& fileName) {
  if (fileName.empty() || fileName.find('\0') != std::string::npos)
    throw RunTimeError(ErrorNumber::PathFileAccess);
}

}  // namespace quillet
