#include "platform/portable/pixel_memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace quillet {
namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;
constexpr std::align_val_t kCacheLine{64};

// A mapping that starts on a large page: maps more than is needed and gives the ends back.
Byte* MapAligned(std::size_t size) {
  const std::size_t mapped = size + kLargePage;
  void* const whole =
      mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (whole == MAP_FAILED) throw std::bad_alloc();
  Byte* const begin = static_cast<Byte*>(whole);
  const std::size_t head =
      (kLargePage - reinterpret_cast<std::uintptr_t>(begin) % kLargePage) % kLargePage;
  if (head != 0) munmap(begin, head);
  munmap(begin + head + size, mapped - head - size);
#ifdef MADV_HUGEPAGE
  // Only advice: without large pages everything works, more slowly.
  madvise(begin + head, size, MADV_HUGEPAGE);
#endif
  return begin + head;
}

// The tail gets a large page too: as many small ones would cost more than the rest of the block.
std::size_t WholePages(std::size_t size) {
  return (size + kLargePage - 1) / kLargePage * kLargePage;
}

}  // namespace

PixelMemory::PixelMemory(std::size_t size)
    : m_data(size >= kMappedSize ? MapAligned(WholePages(size))
                                 : static_cast<Byte*>(::operator new(size, kCacheLine))),
      m_size(size) {}

PixelMemory::~PixelMemory() {
  if (m_size >= kMappedSize) {
    munmap(m_data, WholePages(m_size));
  } else {
    ::operator delete(m_data, kCacheLine);
  }
}

}  // namespace quillet
