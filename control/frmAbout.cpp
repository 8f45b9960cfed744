#include "control/frmAbout.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string_view>

namespace quillet {
namespace {

constexpr const char* kTitle = "Quillet";
constexpr const char* kCopyright = "Copyright 2026/";
constexpr const char* kHolder = "the Quillet authors";
constexpr const char* kDisclaimer =
    "This control is protected by copyright law and international treaties. Unauthorised "
    "reproduction or distribution of it, or of any part of it, may bring civil and criminal "
    "penalties.";
constexpr const char* kAddress = "https://quillet.example.com";

constexpr OLE_COLOR kBlue = 0xFF0000u;
constexpr OLE_COLOR kGrey = 0x808080u;
constexpr OLE_COLOR kWhite = 0xFFFFFFu;

// A pointing hand: X its outline, a dot its inside, the tip of the finger the hot spot.
constexpr std::string_view kHand[] = {
    "     XX",            //
    "    X..X",           //
    "    X..X",           //
    "    X..X",           //
    "    X..X",           //
    "    X..XXX",         //
    "    X..X..XXX",      //
    "    X..X..X..XX",    //
    "    X..X..X..X.X",   //
    "XXX X..X..X..X..X",  //
    "X..XX........X..X",  //
    "X...X...........X",  //
    " X..............X",  //
    "  X.............X",  //
    "  X.............X",  //
    "   X............X",  //
    "   X...........X",   //
    "    X..........X",   //
    "    X..........X",   //
    "     X........X",    //
    "     X........X",    //
    "     XXXXXXXXXX",
};

constexpr FormPointer HandPointer() {
  FormPointer pointer{.hotSpotX = 5};
  for (std::uint32_t& row : pointer.screen) row = 0xFFFFFFFFu;
  std::size_t y = 0;
  for (const std::string_view row : kHand) {
    std::uint32_t bit = 0x80000000u;
    for (const char dot : row) {
      if (dot != ' ') pointer.screen[y] &= ~bit;
      if (dot == '.') pointer.image[y] |= bit;
      bit >>= 1;
    }
    ++y;
  }
  return pointer;
}

constexpr FormPointer kHandPointer = HandPointer();

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

std::string FourDigits(int year) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d", year);
  return text;
}

}  // namespace

void frmAbout::Show() {
  m_platform.forms.Show("frmAbout", *this);
}

Form frmAbout::Form_Load() {
  using enum FormControl::Kind;
  const SystemServices& system = m_platform.system;
  Form form{std::string("About ") + kTitle, 5055, 2490, {}};
  form.controls = {
      {.kind = Label,
       .name = "lblAppTitle",
       .left = 300,
       .top = 180,
       .width = 4410,
       .height = 195,
       .caption = std::string(kTitle) + " - " + UpperCase(system.ModuleName())},
      {.kind = Label,
       .name = "lblCopyright",
       .left = 300,
       .top = 420,
       .width = 4410,
       .height = 195,
       .caption = kCopyright + FourDigits(system.CurrentYear()) + ", " + kHolder},
      {.kind = Label,
       .name = "lblDisclaimer",
       .left = 300,
       .top = 960,
       .width = 4410,
       .height = 885,
       .caption = kDisclaimer},
      {.kind = Label,
       .name = "lblAddress",
       .left = 300,
       .top = 2040,
       .width = 2445,
       .height = 195,
       .caption = std::string("Web: ") + kAddress,
       .color = kBlue,
       .pointer = &kHandPointer},
      {.kind = Button,
       .name = "cmdOK",
       .left = 3720,
       .top = 1980,
       .width = 975,
       .height = 375,
       .caption = "OK"},
  };
  // Two etched separators: grey, with white one pixel below and to the right.
  const auto addLine = [&](Single left, Single top, OLE_COLOR color) {
    form.controls.push_back({.kind = Line,
                             .name = "Line1",
                             .left = left,
                             .top = top,
                             .width = 4740 - left,
                             .color = color});
  };
  for (const Single top : {Single{840}, Single{1800}}) {
    addLine(240, top, kGrey);
    addLine(255, top + 15, kWhite);
  }
  return form;
}

void frmAbout::Click(ShownForm& form, const std::string& control) {
  if (control == "cmdOK") cmdOK_Click(form);
  if (control == "lblAddress") lblAddress_Click(form);
}

void frmAbout::cmdOK_Click(ShownForm& form) {
  form.Unload();
}

// Whether anything could be opened is nobody's concern.
void frmAbout::lblAddress_Click(const ShownForm& form) {
  m_platform.system.ShellExecuteA(form.hWnd(), kAddress);
}

}  // namespace quillet
