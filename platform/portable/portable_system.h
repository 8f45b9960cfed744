#pragma once

#include "platform/contracts/system_services.h"

namespace quillet {

// The machine's clock and the module's name. Nobody sits at a display here, so there is no shell
// that could open anything.
class PortableSystem : public SystemServices {
 public:
  int CurrentYear() const override;
  std::string ModuleName() const override;
  bool ShellExecuteA(WindowHandle window, const std::string& file) override;
};

}  // namespace quillet
