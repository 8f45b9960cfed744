#pragma once

#include "platform/contracts/system_services.h"

namespace quillet {

class Win32System : public SystemServices {
 public:
  int CurrentYear() const override;
  std::string ModuleName() const override;
  bool ShellExecuteA(WindowHandle window, const std::string& file) override;
};

}  // namespace quillet
