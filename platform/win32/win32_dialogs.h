#pragma once

#include "platform/contracts/dialogs.h"

namespace quillet {

// The system's common file dialogs, in their ANSI form.
class Win32Dialogs : public Dialogs {
 public:
  bool GetSaveFileNameA(OPENFILENAME_RECORD& record) override;
  bool GetOpenFileNameA(OPENFILENAME_RECORD& record) override;
};

}  // namespace quillet
