#pragma once

#include <string>

#include "platform/contracts/handles.h"

namespace quillet {

// What the machine knows of itself, and its shell.
class SystemServices {
 public:
  virtual ~SystemServices() = default;

  // The year that the machine's clock shows now, in local time.
  virtual int CurrentYear() const = 0;
  // The file that holds this code, program or library, without folder and extension; UTF-8.
  virtual std::string ModuleName() const = 0;
  // Opens a document or an address with the program for it; false when nothing can.
  virtual bool ShellExecuteA(WindowHandle window, const std::string& file) = 0;
};

}  // namespace quillet
