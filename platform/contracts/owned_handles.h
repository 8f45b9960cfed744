#pragma once

#include <utility>

#include "platform/contracts/bitmap_services.h"

namespace quillet {

// Owns a bitmap. `release()` stands only where ownership passes to a picture.
class UniqueBitmap {
 public:
  UniqueBitmap() = default;
  UniqueBitmap(BitmapServices& services, BitmapHandle bitmap) noexcept
      : m_services(&services), m_bitmap(bitmap) {}
  UniqueBitmap(UniqueBitmap&& other) noexcept
      : m_services(other.m_services), m_bitmap(other.release()) {}
  UniqueBitmap& operator=(UniqueBitmap&& other) noexcept {
    if (this != &other) {
      reset();
      m_services = other.m_services;
      m_bitmap = other.release();
    }
    return *this;
  }
  ~UniqueBitmap() { reset(); }

  BitmapHandle get() const noexcept { return m_bitmap; }
  explicit operator bool() const noexcept { return m_bitmap != BitmapHandle::None; }
  [[nodiscard]] BitmapHandle release() noexcept {
    return std::exchange(m_bitmap, BitmapHandle::None);
  }
  void reset() noexcept {
    if (*this) m_services->DeleteObject(release());
  }

 private:
  BitmapServices* m_services = nullptr;
  BitmapHandle m_bitmap = BitmapHandle::None;
};

// Owns a memory device context. Declare it before the SelectGuards on it.
class UniqueDC {
 public:
  explicit UniqueDC(BitmapServices& services)
      : m_services(services), m_dc(services.CreateCompatibleDC()) {}
  UniqueDC(const UniqueDC&) = delete;
  UniqueDC& operator=(const UniqueDC&) = delete;
  ~UniqueDC() {
    if (m_dc != DCHandle::None) m_services.DeleteDC(m_dc);
  }

  DCHandle get() const noexcept { return m_dc; }
  explicit operator bool() const noexcept { return m_dc != DCHandle::None; }

 private:
  BitmapServices& m_services;
  DCHandle m_dc;
};

// Selects a bitmap into a context and puts the previous one back, so that the bitmap can be
// released.
class SelectGuard {
 public:
  SelectGuard(BitmapServices& services, DCHandle dc, BitmapHandle bitmap)
      : m_services(services), m_dc(dc), m_previous(services.SelectObject(dc, bitmap)) {}
  SelectGuard(const SelectGuard&) = delete;
  SelectGuard& operator=(const SelectGuard&) = delete;
  ~SelectGuard() {
    if (*this) m_services.SelectObject(m_dc, m_previous);
  }

  // False when the bitmap was refused.
  explicit operator bool() const noexcept { return m_previous != BitmapHandle::None; }

 private:
  BitmapServices& m_services;
  DCHandle m_dc;
  BitmapHandle m_previous;
};

}  // namespace quillet
