#include "platform/portable/large_block.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>
#include <utility>

namespace quillet {
namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

// Whole small pages, so that a block's end can be given back: the largest in common use.
std::size_t PageMultiple(std::size_t size) {
  constexpr std::size_t kPage = std::size_t{64} << 10;
  return (size + kPage - 1) / kPage * kPage;
}

// Only advice: without it everything works, more slowly.
void Advise([[maybe_unused]] Byte* data, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
  madvise(data, size, MADV_HUGEPAGE);
#endif
#ifdef MADV_POPULATE_WRITE
  // What does not fill a large page comes at once instead of by a fault for each small one.
  const std::size_t whole = size / kLargePage * kLargePage;
  if (whole != size) madvise(data + whole, size - whole, MADV_POPULATE_WRITE);
#endif
}

}  // namespace

// Starts on a large page: maps more than is needed and gives the ends back.
LargeBlock::LargeBlock(std::size_t size) : m_size(PageMultiple(size)) {
  const std::size_t mapped = m_size + kLargePage;
  void* const whole =
      mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (whole == MAP_FAILED) throw std::bad_alloc();
  Byte* const begin = static_cast<Byte*>(whole);
  const std::size_t head =
      (kLargePage - reinterpret_cast<std::uintptr_t>(begin) % kLargePage) % kLargePage;
  if (head != 0) munmap(begin, head);
  munmap(begin + head + m_size, mapped - head - m_size);
  m_data = begin + head;
  Advise(m_data, m_size);
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

void LargeBlock::Trim(std::size_t size) noexcept {
  const std::size_t kept = PageMultiple(size);
  if (kept >= m_size) return;
  munmap(m_data + kept, m_size - kept);
  m_size = kept;
}

void LargeBlock::Unmap() noexcept {
  if (m_data) munmap(m_data, m_size);
}

}  // namespace quillet
