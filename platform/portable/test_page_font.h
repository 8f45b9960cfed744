#pragma once

#include <vector>

namespace quillet {

// A point in the units of its context, y upwards in glyphs and downwards on the page.
struct PagePoint {
  double x = 0, y = 0;
};

// A line that a pen draws without leaving the paper.
using PagePath = std::vector<PagePoint>;

// One character of the test page's font, as strokes of a round pen. Units: capitals are
// kCapitalHeight high and stand on y 0; the strokes begin at x 0.
struct StrokeGlyph {
  std::vector<PagePath> strokes;
  double width = 0;  // of the drawn part
};

// A sans-serif single-stroke font for printable ASCII.
class StrokeFont {
 public:
  static constexpr double kCapitalHeight = 28;
  static constexpr double kLetterGap = 8;

  StrokeFont();

  // A question mark for a character that the font does not have.
  const StrokeGlyph& Glyph(char character) const noexcept;

 private:
  std::vector<StrokeGlyph> m_glyphs;
};

}  // namespace quillet
