#include "base/runtime_error.h"
#include "host/control_file.h"

namespace quillet {

std::unique_ptr<ControlFile> LoadControlFile(const std::string&) {
  throw RunTimeError(ErrorNumber::ActionNotSupported, "controls are in files on Windows only");
}

}  // namespace quillet
