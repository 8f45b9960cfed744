// Tone, filters and comparison: in place on pixels that the buffer holds already.

#include <stdexcept>

#include "bench/operation.h"
#include "bench/peer.h"
#include "picture/dib_section.h"

namespace quillet::bench {
namespace {

Trial Invert(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Invert(true, true, true); },
          .peer = peer::Invert(page)};
}

Trial GrayScale(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->GrayScale(); },
          .peer = peer::GrayScale(page)};
}

Trial BlackWhite(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->BlackWhite(); },
          .peer = peer::BlackWhite(page)};
}

Trial Contrast(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Contrast(2); },
          .peer = peer::Scale(page, 2, -128)};
}

Trial Fade(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Fade(200); },
          .peer = peer::Scale(page, 200 / 255.0, 0)};
}

// Of no other operation does the time depend on the pixels, which therefore are the same each time.
Trial Lighten(const Page& page, const PictureRef& picture, std::function<void()> theirs) {
  const auto buffer = page.EmptyBuffer();
  return {.prepare =
              [=] {
                buffer->CopyFromPicture(picture);
                buffer->Flip();  // fetches the pixels
                buffer->Flip();
              },
          .run = [=] { buffer->Lighten(20); },
          .peer = std::move(theirs)};
}

PictureRef NoiseOf(const Page& page) {
  DibSection section = DibSection::Create(page.Contracts().bitmaps, page.Width(), page.Height());
  unsigned random = 1;
  for (Long y = 0; y < page.Height(); ++y) {
    for (Long i = 0; i < 3 * page.Width(); ++i) {
      random = random * 1664525u + 1013904223u;
      section.Row(y)[i] = static_cast<Byte>(random >> 24);
    }
  }
  PictureRef picture = page.Contracts().pictures.OleCreatePictureIndirect(section.Bitmap());
  if (!picture) throw std::runtime_error("no memory for noise");
  static_cast<void>(section.Owner().release());
  return picture;
}

Trial Sharpen(const Page& page, Single amount) {
  return {.run = [=, buffer = page.FilledBuffer()] { buffer->Sharpen(amount); },
          .peer = peer::Filter(page, {0, 0, 0, 0, 1 + amount, 0, 0, 0, -amount})};
}

Trial Blur(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Blur(); },
          .peer = peer::Filter(page, {0.2f, 0, 0, 0, 0.2f, 0.2f, 0, 0.2f, 0.2f})};
}

Trial Compare(const Page& page) {
  return {.run =
              [a = page.FilledBuffer(), b = page.FilledBuffer()] {
                if (!a->Compare(*b)) throw std::logic_error("equal pages differ");
              },
          .peer = peer::Compare(page)};
}

constexpr Operation kOperations[] = {
    {"Invert", {.ofMemcpy = 0.5, .ofPeer = 1.0}, Invert},
    {"GrayScale", {.ofMemcpy = 1.0, .ofPeer = 0.65}, GrayScale},
    {"BlackWhite", {.ofMemcpy = 0.75, .ofPeer = 0.3}, BlackWhite},
    {"Contrast", {.ofMemcpy = 0.55, .ofPeer = 0.5}, Contrast},
    {"Fade", {.ofMemcpy = 0.8, .ofPeer = 0.7}, Fade},
    {"Lighten",
     {.ofMemcpy = 3, .ofPeer = 0.12},
     [](const Page& page) { return Lighten(page, page.AsPicture(), peer::Lighten(page, 1.2)); }},
    {"Lighten, noise",
     {.ofMemcpy = 12, .ofPeer = 0.5},
     [](const Page& page) { return Lighten(page, NoiseOf(page), peer::LightenNoise(page, 1.2)); }},
    {"Sharpen",
     {.ofMemcpy = 0.9, .ofPeer = 0.4},
     [](const Page& page) { return Sharpen(page, 0.5f); }},
    {"SharpenMore",
     {.ofMemcpy = 0.9, .ofPeer = 0.4},
     [](const Page& page) { return Sharpen(page, 0.8f); }},
    {"Blur", {.ofMemcpy = 1.7, .ofPeer = 0.4}, Blur},
    {"Compare, equal pictures", {.ofMemcpy = 0.9, .ofPeer = 1.0}, Compare},
};

}  // namespace

std::span<const Operation> ToneOperations() {
  return kOperations;
}

}  // namespace quillet::bench
