#pragma once

#include "server/part.h"
#include "server/twain_interfaces.h"

namespace quillet {

// Which interfaces leave a description of their errors with the thread.
class ErrorInfoPart final : public Part<ISupportErrorInfo> {
 public:
  using Part::Part;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == kTwainInterface ? S_OK : S_FALSE;
  }
};

}  // namespace quillet
