#pragma once

#include <utility>

#include "picture/cPicture24.h"

namespace quillet {

// The buffer's pixels while an operation works on them. The buffer is empty meanwhile, so that a
// progress handler which uses it disturbs nothing; every way out gives the pixels back, in place of
// whatever the handlers left there.
class cPicture24::Loan {
 public:
  explicit Loan(cPicture24& owner) : m_owner(owner), m_pixels(owner.TakePixels()) {}
  Loan(const Loan&) = delete;
  Loan& operator=(const Loan&) = delete;
  ~Loan() { m_owner.Hold(std::move(m_pixels)); }

  DibSection& Pixels() noexcept { return m_pixels; }
  // What the buffer gets back instead.
  void Replace(DibSection pixels) noexcept { m_pixels = std::move(pixels); }

 private:
  cPicture24& m_owner;
  DibSection m_pixels;
};

// The row loop of every pixel operation, and the only place that raises progress.
template <typename RowFunction>
void cPicture24::ForEachRow(Long first, Long last, Long height, RowFunction&& transformRow) {
  for (Long y = first; y <= last; ++y) {
    transformRow(y);
    RaiseProgress(y, height);
  }
}

// An operation in place on rows `top` to Height() - 1 - `bottom`; an empty buffer has none.
template <typename RowFunction>
void cPicture24::TransformRows(Long top, Long bottom, RowFunction&& transformRow) {
  if (m_width < 1) return;
  Loan loan(*this);
  DibSection& pixels = loan.Pixels();
  const Long height = pixels.Height();
  ForEachRow(top, height - 1 - bottom, height, [&](Long y) { transformRow(pixels, y); });
}

}  // namespace quillet
