#include "platform/portable/test_page_text.h"

#include <algorithm>

namespace quillet {

double PageText::Width(std::string_view text, const TextStyle& style) const {
  double width = -StrokeFont::kLetterGap;
  for (const char character : text) width += m_font.Glyph(character).width + StrokeFont::kLetterGap;
  return std::max(width, 0.0) * style.capitalHeight / StrokeFont::kCapitalHeight;
}

void PageText::Words(PagePoint at, std::string_view text, const TextStyle& style,
                     double extraSpace) {
  const double scale = style.capitalHeight / StrokeFont::kCapitalHeight;
  std::vector<PagePath> strokes;
  for (const char character : text) {
    const StrokeGlyph& glyph = m_font.Glyph(character);
    strokes = glyph.strokes;
    for (PagePath& path : strokes)
      for (PagePoint& point : path)
        point = {at.x + (point.x + style.slant * point.y) * scale, at.y - point.y * scale};
    m_canvas.Stroke(strokes, style.pen * style.capitalHeight, style.color);
    at.x += (glyph.width + StrokeFont::kLetterGap) * scale;
    if (character == ' ') at.x += extraSpace;
  }
}

void PageText::Line(PagePoint at, std::string_view text, const TextStyle& style, TextAlign align) {
  const double width = Width(text, style);
  if (align == TextAlign::Centre) at.x -= width / 2;
  if (align == TextAlign::Right) at.x -= width;
  Words(at, text, style, 0);
}

double PageText::Paragraph(PagePoint at, double width, double leading, std::string_view text,
                           const TextStyle& style) {
  while (!text.empty()) {
    std::size_t end = text.find(' ');
    for (std::size_t next = end; next != std::string_view::npos;) {
      next = text.find(' ', end + 1);
      if (Width(text.substr(0, next), style) > width) break;
      end = next;
    }
    const std::string_view line = text.substr(0, end);
    const bool last = end == std::string_view::npos;
    const auto spaces = static_cast<double>(std::count(line.begin(), line.end(), ' '));
    const double extra = last || spaces == 0 ? 0 : (width - Width(line, style)) / spaces;
    Words(at, line, style, extra);
    text = last ? std::string_view{} : text.substr(end + 1);
    at.y += leading;
  }
  return at.y;
}

}  // namespace quillet
