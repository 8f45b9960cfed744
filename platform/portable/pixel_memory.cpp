#include "platform/portable/pixel_memory.h"

#include <new>
#include <utility>

namespace quillet {
namespace {

constexpr std::size_t kLargeSize = std::size_t{2} << 20;
constexpr std::align_val_t kCacheLine{64};

}  // namespace

PixelMemory::PixelMemory(std::size_t size, std::shared_ptr<BlockReserve> reserve)
    : m_reserve(std::move(reserve)), m_size(size) {
  if (size < kLargeSize) {
    m_data = static_cast<Byte*>(::operator new(size, kCacheLine));
    return;
  }
  if (m_reserve) m_block = m_reserve->Take(size);
  if (!m_block) {
    m_block.emplace(size);
    m_zeroed = true;
  }
  m_data = m_block->Data();
}

PixelMemory::~PixelMemory() {
  if (!m_block) {
    ::operator delete(m_data, kCacheLine);
  } else if (m_reserve) {
    m_reserve->Keep(std::move(*m_block));
  }
}

}  // namespace quillet
