#pragma once

#include "platform/contracts/platform.h"

namespace quillet {

// The window that says what this is. It knows nothing of any control.
class frmAbout : private FormEvents {
 public:
  explicit frmAbout(Platform& platform) : m_platform(platform) {}

  // Modal: returns when the window is closed, at once while it is open already. Run-time error 7
  // when it cannot be made.
  void Show();

 private:
  Form Form_Load() override;
  void Click(ShownForm& form, const std::string& control) override;
  void cmdOK_Click(ShownForm& form);
  void lblAddress_Click(const ShownForm& form);

  Platform& m_platform;
};

}  // namespace quillet
