#pragma once

#include <cstdint>
#include <utility>

#include "platform/contracts/codec_library.h"

namespace quillet {

// The codec library, started for one operation and shut down at its end, unless it did not start.
class CodecSession {
 public:
  explicit CodecSession(CodecLibrary& library)
      : m_library(library), m_status(library.GdiplusStartup(m_token)) {}
  CodecSession(const CodecSession&) = delete;
  CodecSession& operator=(const CodecSession&) = delete;
  ~CodecSession() {
    if (m_status == CodecStatus::Ok) m_library.GdiplusShutdown(m_token);
  }

  CodecStatus Status() const noexcept { return m_status; }

 private:
  CodecLibrary& m_library;
  std::uintptr_t m_token = 0;
  CodecStatus m_status;
};

// Owns a codec image. Declared after the session that it needs.
class CodecImage {
 public:
  explicit CodecImage(CodecLibrary& library) : m_library(library) {}
  CodecImage(const CodecImage&) = delete;
  CodecImage& operator=(const CodecImage&) = delete;
  ~CodecImage() {
    if (m_image != ImageHandle::None) m_library.GdipDisposeImage(m_image);
  }

  ImageHandle get() const noexcept { return m_image; }
  // For a callee that stores an image in it.
  ImageHandle& out() noexcept { return m_image; }

 private:
  CodecLibrary& m_library;
  ImageHandle m_image = ImageHandle::None;
};

}  // namespace quillet
