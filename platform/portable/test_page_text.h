#pragma once

#include <string_view>

#include "platform/portable/test_page_canvas.h"
#include "platform/portable/test_page_font.h"

namespace quillet {

struct TextStyle {
  double capitalHeight = 0;  // in millimetres
  double pen = 0;            // stroke width as a part of the capital height
  PageColor color;
  double slant = 0;  // way to the right for one unit up
};

enum class TextAlign { Left, Centre, Right };

// Sets lines and paragraphs of text on a canvas.
class PageText {
 public:
  explicit PageText(PageCanvas& canvas) : m_canvas(canvas) {}

  double Width(std::string_view text, const TextStyle& style) const;
  // `at` is a point of the baseline: the text's left end, middle or right end.
  void Line(PagePoint at, std::string_view text, const TextStyle& style,
            TextAlign align = TextAlign::Left);
  // Breaks the text at its spaces and spreads the words of all lines but the last over the width.
  // `at` is the left end of the first baseline. Returns the baseline after the last line's.
  double Paragraph(PagePoint at, double width, double leading, std::string_view text,
                   const TextStyle& style);

 private:
  void Words(PagePoint at, std::string_view text, const TextStyle& style, double extraSpace);

  PageCanvas& m_canvas;
  StrokeFont m_font;
};

}  // namespace quillet
