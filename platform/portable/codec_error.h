#pragma once

#include <stdexcept>
#include <string>

#include "platform/contracts/codec_library.h"

namespace quillet {

// How a codec refuses; the codec library's calls answer with the status.
class CodecError : public std::runtime_error {
 public:
  explicit CodecError(CodecStatus status, const std::string& reason = "")
      : std::runtime_error(reason), m_status(status) {}
  CodecStatus Status() const noexcept { return m_status; }

 private:
  CodecStatus m_status;
};

// For content that is no image of its format.
[[noreturn]] inline void RefuseImage(const std::string& reason) {
  throw CodecError(CodecStatus::GenericError, reason);
}

}  // namespace quillet
