#pragma once

#include <string>

#include "platform/contracts/platform.h"

namespace quillet {

// The standard dialogs for choosing a file.
//
// A filter is written as pairs of description and pattern, every item separated by "|"; it comes
// back as the dialog needs it, every "|" replaced by a NUL and one added at the end. The answer is
// the chosen full path, empty when the user cancelled.
class cDialog {
 public:
  explicit cDialog(Platform& platform) : m_platform(platform) {}

  std::string ShowSaveDialog(WindowHandle owner, std::string& filter, const std::string& title,
                             const std::string& initialDirectory);
  std::string ShowOpenDialog(WindowHandle owner, std::string& filter, const std::string& title,
                             const std::string& initialDirectory);

 private:
  Platform& m_platform;
};

}  // namespace quillet
