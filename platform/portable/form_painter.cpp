#include "platform/portable/form_painter.h"

#include <string_view>

#include "platform/portable/surface_rect.h"
#include "platform/portable/system_colors.h"
#include "platform/portable/test_page_text.h"

namespace quillet {
namespace {

constexpr OLE_COLOR kActiveCaption = 0x80000002u;
constexpr OLE_COLOR kCaptionText = 0x80000009u;

constexpr int kFrame = 3;
constexpr int kTitleBar = 18;
constexpr int kLineHeight = 13;  // one line of a label is 195 twips

// The canvas measures in millimetres; at this resolution a pixel is a tenth of one.
constexpr int kDotsPerInch = 254;
constexpr double kUnit = 0.1;

class FormPainter {
 public:
  explicit FormPainter(const Form& form)
      : m_client(RectFromTwips(0, 0, form.scaleWidth, form.scaleHeight)),
        m_raster(m_client.width + 2 * kFrame, m_client.height + 2 * kFrame + kTitleBar + 1,
                 ResolveColor(kFace3D)),
        m_canvas(m_raster.Width(), m_raster.Height(), kDotsPerInch, m_raster.Pixels(),
                 std::ptrdiff_t{3} * m_raster.Width()),
        m_text(m_canvas) {
    const PixelRect window = m_raster.Bounds();
    m_raster.Edge(window, ResolveColor(kLight3D), ResolveColor(kDarkShadow3D));
    m_raster.Edge(window.Inset(1), ResolveColor(kHighlight3D), ResolveColor(kShadow3D));
    const PixelRect title{kFrame, kFrame, m_client.width, kTitleBar};
    m_raster.Fill(title, ResolveColor(kActiveCaption));
    Line(form.caption, title.left + 4, title.top + 13, ResolveColor(kCaptionText), kBold);
    m_client.left = kFrame;
    m_client.top = kFrame + kTitleBar + 1;
    for (const FormControl& control : form.controls) Draw(control);
  }

  Raster Take() && { return std::move(m_raster); }

 private:
  static constexpr double kRegular = 0.13;
  static constexpr double kBold = 0.2;

  void Draw(const FormControl& control) {
    PixelRect place = RectFromTwips(control.left, control.top, control.width, control.height);
    place.left += m_client.left;
    place.top += m_client.top;
    const Rgb color = ResolveColor(control.color);
    switch (control.kind) {
      case FormControl::Kind::Label:
        return Wrapped(control.caption, place, color);
      case FormControl::Kind::Button:
        m_raster.Edge(place, ResolveColor(kHighlight3D), ResolveColor(kDarkShadow3D));
        m_raster.Edge(place.Inset(1), ResolveColor(kLight3D), ResolveColor(kShadow3D));
        return Line(control.caption, place.left + (place.width - Width(control.caption)) / 2,
                    place.top + (place.height + kCapitals) / 2, color, kRegular);
      case FormControl::Kind::Line:
        // One pixel wide; only upright and level ones occur.
        return m_raster.Fill(
            {place.left, place.top, std::max(place.width, 1), std::max(place.height, 1)}, color);
    }
  }

  void Wrapped(std::string_view text, const PixelRect& place, Rgb color) {
    for (int top = place.top; !text.empty() && top < place.top + place.height; top += kLineHeight) {
      std::size_t end = text.find(' ');
      for (std::size_t next = end; next != std::string_view::npos;) {
        next = text.find(' ', end + 1);
        if (Width(text.substr(0, next)) > place.width) break;
        end = next;
      }
      Line(text.substr(0, end), place.left, top + 10, color, kRegular);
      text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    }
  }

  // Pixels are red, green, blue here, which the canvas takes for blue, green, red.
  static TextStyle Style(Rgb color, double pen) {
    return {.capitalHeight = kCapitals * kUnit,
            .pen = pen,
            .color = {color.blue, color.green, color.red}};
  }
  void Line(std::string_view text, double left, int baseline, Rgb color, double pen) {
    m_text.Line({(left + 0.5) * kUnit, (baseline - 0.5) * kUnit}, text, Style(color, pen));
  }
  double Width(std::string_view text) const { return m_text.Width(text, Style({}, 0)) / kUnit; }

  static constexpr int kCapitals = 7;  // height in pixels, of letters of 8 points

  PixelRect m_client;
  Raster m_raster;
  PageCanvas m_canvas;
  PageText m_text;
};

}  // namespace

Raster PaintForm(const Form& form) {
  return FormPainter(form).Take();
}

}  // namespace quillet
