#include "platform/portable/large_block.h"

#include <new>
#include <utility>

#include "platform/win32/sdk.h"

namespace quillet {
namespace {

constexpr std::size_t kPage = std::size_t{64} << 10;

std::size_t PageMultiple(std::size_t size) {
  return (size + kPage - 1) / kPage * kPage;
}

}  // namespace

LargeBlock::LargeBlock(std::size_t size) : m_size(PageMultiple(size)) {
  m_data =
      static_cast<Byte*>(::VirtualAlloc(nullptr, m_size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (!m_data) throw std::bad_alloc();
}

LargeBlock::LargeBlock(LargeBlock&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)) {}

LargeBlock& LargeBlock::operator=(LargeBlock&& other) noexcept {
  if (this != &other) {
    Unmap();
    m_data = std::exchange(other.m_data, nullptr);
    m_size = std::exchange(other.m_size, 0);
  }
  return *this;
}

LargeBlock::~LargeBlock() {
  Unmap();
}

// The address space stays reserved until the block goes; the memory is given back.
void LargeBlock::Trim(std::size_t size) noexcept {
  const std::size_t kept = PageMultiple(size);
  if (kept >= m_size) return;
  ::VirtualFree(m_data + kept, m_size - kept, MEM_DECOMMIT);
  m_size = kept;
}

void LargeBlock::Unmap() noexcept {
  if (m_data) ::VirtualFree(m_data, 0, MEM_RELEASE);
}

}  // namespace quillet
