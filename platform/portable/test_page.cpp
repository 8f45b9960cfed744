#include "platform/portable/test_page.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <vector>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "platform/portable/test_page_canvas.h"
#include "platform/portable/test_page_photo.h"
#include "platform/portable/test_page_text.h"

namespace quillet {
namespace {

constexpr double kPageWidth = 210, kPageHeight = 297;  // A4, in millimetres
constexpr double kLeft = 20, kRight = 190, kMiddle = 105;

constexpr PageColor kPaper{252, 251, 246};
constexpr PageColor kInk{38, 38, 42};
constexpr PageColor kGrey{112, 114, 120};
constexpr PageColor kAccent{18, 84, 112};
constexpr PageColor kRule{170, 176, 182};
constexpr PageColor kBlack{12, 12, 12};

// A patch reaches under the next one, so that no paper shines through where they meet.
constexpr double kTuck = 0.6;

constexpr TextStyle kBody{2.3, 0.105, kInk};
constexpr TextStyle kCaption{1.85, 0.10, kGrey};
constexpr TextStyle kStrong{2.3, 0.16, kInk};

// Draws the page's parts from the top down.
class Composer {
 public:
  explicit Composer(PageCanvas& canvas) : m_canvas(canvas), m_text(canvas) {}

  void Compose() {
    m_canvas.Fill(kPaper);
    RegistrationMarks();
    Letterhead();
    Letter();
    Photograph();
    Table();
    SmallPrint();
    HueWedge();
    GreyWedge();
    LinePatterns();
    m_text.Line({kMiddle, 286}, "Page 1 of 1", kCaption, TextAlign::Centre);
  }

 private:
  void RegistrationMarks();
  void Letterhead();
  void Letter();
  void Photograph();
  void Table();
  void SmallPrint();
  void HueWedge();
  void GreyWedge();
  void LinePatterns();

  PageCanvas& m_canvas;
  PageText m_text;
};

void Composer::RegistrationMarks() {
  constexpr double kInset = 9, kArm = 4, kPen = 0.18;
  for (const double x : {kInset, kPageWidth - kInset}) {
    for (const double y : {kInset, kPageHeight - kInset}) {
      m_canvas.FillDisc({x, y}, 2.2, kBlack);
      m_canvas.FillDisc({x, y}, 2.2 - kPen, kPaper);
      m_canvas.FillBox({x - kArm, y - kPen / 2, x + kArm, y + kPen / 2}, kBlack);
      m_canvas.FillBox({x - kPen / 2, y - kArm, x + kPen / 2, y + kArm}, kBlack);
      m_canvas.FillDisc({x, y}, 0.9, kBlack);
    }
  }
}

void Composer::Letterhead() {
  // The mark: a quill that has just drawn its line.
  const PagePoint centre{kLeft + 8, 24};
  m_canvas.FillDisc(centre, 8, kAccent);
  constexpr PageColor kFeather{236, 242, 240};
  std::array<PagePath, 10> barbs;
  for (std::size_t i = 0; i < barbs.size(); ++i) {
    const double along = static_cast<double>(i) / (barbs.size() - 1);
    const PagePoint root{centre.x - 1.6 + 5.6 * along, centre.y + 2.0 - 7.0 * along};
    const double reach = 2.6 * (1 - along) * (0.55 + along) + 0.7;
    barbs[i] = {{root.x - reach, root.y - 0.55 * reach},
                root,
                {root.x + reach * 0.5, root.y + reach * 0.75}};
  }
  m_canvas.Stroke(barbs, 0.62, kFeather);
  const PagePath shaft[] = {{{centre.x + 4.2, centre.y - 5.3}, {centre.x - 3.4, centre.y + 4.2}}};
  m_canvas.Stroke(shaft, 0.5, {250, 206, 96});
  const PagePath line[] = {{{centre.x - 3.4, centre.y + 4.6}, {centre.x + 4.4, centre.y + 4.6}}};
  m_canvas.Stroke(line, 0.45, {250, 206, 96});

  m_text.Line({kLeft + 20, 25.5}, "Quillet", {7.4, 0.13, kAccent});
  m_text.Line({kLeft + 20, 31}, "Pictures from paper", {2.3, 0.11, kGrey});
  m_text.Line({kRight, 20.4}, "Test page", kStrong, TextAlign::Right);
  m_text.Line({kRight, 24.6}, "A4, 210 x 297 mm", kCaption, TextAlign::Right);
  m_text.Line({kRight, 28.2}, "24-bit colour", kCaption, TextAlign::Right);
  m_text.Line({kRight, 31.8}, "No. 0417/B", kCaption, TextAlign::Right);
  m_canvas.FillBox({kLeft, 35.6, kRight, 36.2}, kAccent);
}

void Composer::Letter() {
  m_text.Line({kLeft, 47.5}, "A page made to be looked at", {4.6, 0.125, kInk});
  m_text.Line({kLeft, 53.2}, "How well does it survive the way from paper to screen?",
              {2.5, 0.10, kGrey, 0.2});
  constexpr double kWidth = 80, kLeading = 4.35;
  double y = m_text.Paragraph(
      {kLeft, 61.5}, kWidth, kLeading,
      "Dear reader, this sheet carries a bit of everything that an office puts on its glass: plain "
      "text, a table of figures, a photograph, and lines so fine that they vanish when the "
      "resolution is low.",
      kBody);
  y = m_text.Paragraph(
      {kLeft, y + 1.8}, kWidth, kLeading,
      "Scroll over it, shrink it to the window or stretch it; turn it on its head, mirror it, cut "
      "a piece out. Whatever you do, these words should stay where they belong and remain easy to "
      "read: quick brown foxes, lazy dogs, 1234567890 times.",
      kBody);
  m_text.Line({kLeft, y + 2.2}, "With kind regards,", kBody);

  // A signature in blue ink.
  m_text.Line({kLeft + 3, y + 10.6}, "J. Quill", {5.2, 0.075, {32, 54, 150}, 0.35});
  const PagePath flourish[] = {{{kLeft + 1, y + 13.2},
                                {kLeft + 12, y + 12.4},
                                {kLeft + 24, y + 12.0},
                                {kLeft + 33, y + 12.3},
                                {kLeft + 35, y + 12.9},
                                {kLeft + 30, y + 13.4},
                                {kLeft + 21, y + 13.5}}};
  m_canvas.Stroke(flourish, 0.36, {32, 54, 150});
}

void Composer::Photograph() {
  constexpr PageBox kBox{107, 57.8, kRight, 113.8};
  m_canvas.FillBox({kBox.left - 0.3, kBox.top - 0.3, kBox.right + 0.3, kBox.bottom + 0.3}, kRule);
  const TestPhoto photo(kBox);
  m_canvas.Shade(
      kBox, [&](int column, int row, PagePoint centre) { return photo.At(column, row, centre); });
  m_text.Line({kBox.left, 117.6}, "Fig. 1: The lake on a clear evening, seen from the meadow.",
              kCaption);
}

void Composer::Table() {
  constexpr double kTop = 126, kRow = 5.6;
  constexpr std::array<double, 6> kEdges{kLeft, 34, 96, 119, 154, kRight};
  constexpr std::array<std::array<const char*, 5>, 6> kCells{{
      {"No.", "Item", "Pieces", "Price each", "Sum"},
      {"1", "Goose feathers, hand cut", "24", "1.35", "32.40"},
      {"2", "Iron gall ink, 50 ml (blue-black)", "6", "8.90", "53.40"},
      {"3", "Laid paper A4, 120 g/m2, 100 sheets", "10", "17.25", "172.50"},
      {"4", "Blotting sand & sealing wax", "3", "12.00", "36.00"},
      {"", "Total (incl. 7% tax: 19.25)", "43", "", "294.30"},
  }};
  constexpr double kBottom = kTop + kRow * kCells.size();
  m_canvas.FillBox({kLeft, kTop, kRight, kTop + kRow}, {216, 228, 232});
  m_canvas.FillBox({kLeft, kTop + 2 * kRow, kRight, kTop + 3 * kRow}, {243, 244, 241});
  m_canvas.FillBox({kLeft, kTop + 4 * kRow, kRight, kTop + 5 * kRow}, {243, 244, 241});
  for (std::size_t row = 0; row < kCells.size(); ++row) {
    const double y = kTop + kRow * static_cast<double>(row);
    const bool strong = row == 0 || row + 1 == kCells.size();
    for (std::size_t column = 0; column < kEdges.size() - 1; ++column) {
      const bool figures = column >= 2;
      const double x = figures ? kEdges[column + 1] - 2 : kEdges[column] + 2;
      m_text.Line({x, y + 4}, kCells[row][column], strong ? kStrong : kBody,
                  figures ? TextAlign::Right : TextAlign::Left);
    }
    m_canvas.FillBox({kLeft, y - 0.07, kRight, y + 0.07}, kRule);
  }
  for (const double x : kEdges) m_canvas.FillBox({x - 0.07, kTop, x + 0.07, kBottom}, kRule);
  m_canvas.FillBox({kLeft, kBottom - kRow - 0.15, kRight, kBottom - kRow + 0.15}, kInk);
  m_canvas.FillBox({kLeft, kBottom - 0.15, kRight, kBottom + 0.15}, kInk);
}

void Composer::SmallPrint() {
  double y = 169;
  for (const int points : {14, 11, 9, 7, 6, 5, 4}) {
    // Capitals are about 0.7 of a font's nominal size; a point is 1/72 inch.
    const TextStyle style{points * 0.7 * 25.4 / 72, 0.11, kInk};
    m_text.Line({kLeft, y}, std::to_string(points) + " pt", kCaption);
    m_text.Line({kLeft + 11, y}, "Sphinx of black quartz, judge my vow!", style);
    y += 2.4 + points * 0.27;
  }
  const TextStyle fine{1.5, 0.11, kInk};
  m_text.Line({136, 169}, "Small print", kStrong);
  m_text.Paragraph({136, 173}, kRight - 136, 2.8,
                   "The goods remain ours until paid for; feathers may differ in shade from the "
                   "picture. Questions? Write to us: mail@example.com [weekdays, 9-17 h]. "
                   "<Keep this sheet> for 3/4 of a year; #417 is its number.",
                   fine);
}

// The hue's colour at full saturation; hues run from 0 to 12, red at both ends, green at 4.
PageColor Hue(int hue) {
  const auto channel = [hue](int peak) {
    const int turn = std::min((hue - peak + 12) % 12, (peak - hue + 12) % 12);
    return static_cast<Byte>(255 * std::clamp(4 - turn, 0, 2) / 2);
  };
  return {channel(0), channel(4), channel(8)};
}

PageColor Mixed(PageColor color, int with, int eighths) {
  const auto mix = [&](int channel) {
    return static_cast<Byte>(channel + (with - channel) * eighths / 8);
  };
  return {mix(color.red), mix(color.green), mix(color.blue)};
}

void Composer::HueWedge() {
  constexpr double kTop = 207, kHigh = 6.4, kWide = (kRight - kLeft) / 12;
  m_text.Line({kLeft, kTop - 1.6}, "Colours: light, full, dark", kCaption);
  for (int hue = 0; hue < 12; ++hue) {
    const double x = kLeft + kWide * hue;
    const PageColor patches[] = {Mixed(Hue(hue), 255, 4), Hue(hue), Mixed(Hue(hue), 0, 4)};
    double y = kTop;
    for (const PageColor patch : patches) {
      m_canvas.FillBox({x, y, std::min(x + kWide + kTuck, kRight),
                        std::min(y + kHigh + kTuck, kTop + 3 * kHigh)},
                       patch);
      y += kHigh;
    }
  }
}

void Composer::GreyWedge() {
  constexpr double kTop = 232.5, kHigh = 6.5, kWide = (kRight - kLeft) / 16;
  m_text.Line({kLeft, kTop - 1.6}, "Greys: 16 steps, and without steps", kCaption);
  for (int step = 0; step < 16; ++step) {
    const double x = kLeft + kWide * step;
    const auto grey = static_cast<Byte>(17 * step);
    m_canvas.FillBox({x, kTop, std::min(x + kWide + kTuck, kRight), kTop + kHigh},
                     {grey, grey, grey});
  }
  m_canvas.Shade({kLeft, kTop + kHigh, kRight, kTop + 2 * kHigh}, [](int, int, PagePoint centre) {
    const Byte grey = ToByte(255 * (centre.x - kLeft) / (kRight - kLeft));
    return PageColor{grey, grey, grey};
  });
}

void Composer::LinePatterns() {
  constexpr double kTop = 254, kBottom = 270;
  m_text.Line({kLeft, kTop - 1.6}, "Lines to the millimetre", kCaption);
  double x = kLeft;
  for (const int lines : {1, 2, 3, 4, 6, 8, 10}) {
    const double pen = 0.5 / lines;
    for (int line = 0; line < 8 * lines; ++line) {
      const double at = static_cast<double>(line) / lines;
      m_canvas.FillBox({x + at, kTop, x + at + pen, kTop + 7.5}, kBlack);
      m_canvas.FillBox({x, kTop + 8.5 + at, x + 8, kTop + 8.5 + at + pen}, kBlack);
    }
    m_text.Line({x + 4, kBottom + 3.6}, std::to_string(lines), kCaption, TextAlign::Centre);
    x += 11;
  }

  // Rays that meet: the ring where they run together shows the resolution in every direction.
  const PagePoint centre{111, kTop + 8};
  std::vector<PagePath> rays;
  constexpr int kRays = 12;
  for (int ray = -kRays; ray <= kRays; ++ray) {
    const double t = static_cast<double>(ray) / kRays;  // tangent of half the angle
    const double across = 8 * (1 - t * t) / (1 + t * t), up = 8 * 2 * t / (1 + t * t);
    rays.push_back({{centre.x - across, centre.y - up}, {centre.x + across, centre.y + up}});
  }
  m_canvas.Stroke(rays, 0.3, kBlack);

  const PagePath waves[] = {{{124, kBottom}, {141, kTop}},
                            {{126.5, kBottom}, {143.5, kTop}},
                            {{129, kBottom}, {146, kTop}},
                            {{131.5, kBottom}, {148.5, kTop}}};
  m_canvas.Stroke(waves, 0.2, kAccent);

  constexpr PageColor kInks[] = {{0, 158, 224}, {226, 0, 122}, {255, 226, 0}};
  const PagePoint spots[] = {{163, 259.5}, {170, 259.5}, {166.5, 265}};
  for (std::size_t i = 0; i < std::size(kInks); ++i) m_canvas.FillDisc(spots[i], 5, kInks[i]);
  m_canvas.FillBox({178, kTop, kRight, kTop + 7.5}, {196, 30, 40});
  m_canvas.FillBox({178, kTop + 8.5, kRight, kBottom}, {24, 110, 60});
  m_text.Line({184, kTop + 5}, "abc", {2.6, 0.12, {255, 255, 255}}, TextAlign::Centre);
  m_text.Line({184, kTop + 13.5}, "123", {2.6, 0.12, {250, 226, 120}}, TextAlign::Centre);
}

}  // namespace

TestPageSize SizeOfTestPage(int dotsPerInch) {
  if (dotsPerInch < kMinTestPageResolution || dotsPerInch > kMaxTestPageResolution)
    throw RunTimeError(ErrorNumber::InvalidProcedureCall,
                       "the test page is drawn at 50 to 1200 dots per inch");
  return {ToLong(kPageWidth * dotsPerInch / 25.4), ToLong(kPageHeight * dotsPerInch / 25.4)};
}

void RenderTestPage(int dotsPerInch, Byte* rows, std::ptrdiff_t stride) {
  const TestPageSize size = SizeOfTestPage(dotsPerInch);
  if (std::max(stride, -stride) < 3 * static_cast<std::ptrdiff_t>(size.width))
    throw RunTimeError(ErrorNumber::InvalidProcedureCall, "the rows of the test page overlap");
  PageCanvas canvas(size.width, size.height, dotsPerInch, rows, stride);
  Composer(canvas).Compose();
}

}  // namespace quillet
