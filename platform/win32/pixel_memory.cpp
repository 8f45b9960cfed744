#include "platform/portable/pixel_memory.h"

#include <new>

#include "platform/win32/sdk.h"

namespace quillet {
namespace {

constexpr std::align_val_t kCacheLine{64};

}  // namespace

PixelMemory::PixelMemory(std::size_t size) : m_size(size) {
  if (size < kMappedSize) {
    m_data = static_cast<Byte*>(::operator new(size, kCacheLine));
    return;
  }
  m_data =
      static_cast<Byte*>(::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (!m_data) throw std::bad_alloc();
}

PixelMemory::~PixelMemory() {
  if (m_size >= kMappedSize) {
    ::VirtualFree(m_data, 0, MEM_RELEASE);
  } else {
    ::operator delete(m_data, kCacheLine);
  }
}

}  // namespace quillet
