// The buffer's geometry: in place on pixels it holds already, or from a picture nobody has read.

#include "bench/operation.h"
#include "bench/peer.h"

namespace quillet::bench {
namespace {

Trial Flip(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Flip(); }, .peer = peer::Flip(page)};
}

Trial Reverse(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Reverse(); },
          .peer = peer::Reverse(page)};
}

Trial Rotate(const Page& page) {
  return {.run = [buffer = page.FilledBuffer()] { buffer->Rotate(); }, .peer = peer::Rotate(page)};
}

Trial Crop(const Page& page) {
  const auto buffer = page.EmptyBuffer();
  const Long width = page.Width() / 2;
  const Long height = page.Height() / 2;
  const Long left = page.Width() / 4;
  const Long top = page.Height() / 4;
  return {.prepare = [=, picture = page.AsPicture()] { buffer->CopyFromPicture(picture); },
          .run = [=] { buffer->Crop(left, top, width, height); },
          .peer = peer::Crop(page, left, top, width, height)};
}

Trial Resize(const Page& page, Long width, Long height) {
  const auto buffer = page.EmptyBuffer();
  return {.prepare = [=, picture = page.AsPicture()] { buffer->CopyFromPicture(picture); },
          .run = [=] { buffer->Resize(width, height); },
          .peer = peer::Resize(page, width, height)};
}

constexpr Operation kOperations[] = {
    {"Flip", {.ofMemcpy = 0.75, .ofPeer = 0.7}, Flip},
    {"Reverse", {.ofMemcpy = 0.9, .ofPeer = 0.4}, Reverse},
    {"Rotate", {.ofMemcpy = 2.5, .ofPeer = 0.3}, Rotate},
    {"Crop, half by half", {.ofMemcpy = 0.5, .ofPeer = 1.05}, Crop},
    {"Resize to half",
     {.ofMemcpy = 1.1, .ofPeer = 0.75},
     [](const Page& page) { return Resize(page, page.Width() / 2, page.Height() / 2); }},
    {"Resize to 0.3",
     {.ofMemcpy = 1.9, .ofPeer = 0.2},
     [](const Page& page) { return Resize(page, page.Width() * 3 / 10, page.Height() * 3 / 10); }},
    {"Resize to double",
     {.ofMemcpy = 9, .ofPeer = 0.65},
     [](const Page& page) { return Resize(page, page.Width() * 2, page.Height() * 2); }},
};

}  // namespace

std::span<const Operation> GeometryOperations() {
  return kOperations;
}

}  // namespace quillet::bench
