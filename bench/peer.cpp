#include "bench/peer.h"

#ifdef QUILLET_BENCH_OPENCV

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace quillet::bench::peer {
namespace {

// The page's own pixels, not copied.
cv::Mat MatOf(const Page& page) {
  return cv::Mat(page.Height(), page.Width(), CV_8UC3, page.Pixels(), page.Stride());
}

// Memory of the kind that the control's pictures have, so that large pages favour neither.
struct Target {
  Target(Long width, Long height)
      : memory(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
        mat(height, width, CV_8UC3, memory.Data()) {
    mat.setTo(cv::Scalar::all(0));
  }

  PixelMemory memory;
  cv::Mat mat;
};

template <typename Call>
std::function<void()> Into(Long width, Long height, Call call) {
  cv::setNumThreads(1);
  return [target = std::make_shared<Target>(width, height), call] { call(target->mat); };
}

}  // namespace

const char* Version() {
  return "OpenCV " CV_VERSION ", one thread";
}

std::function<void()> Flip(const Page& page) {
  return Into(page.Width(), page.Height(),
              [source = MatOf(page)](cv::Mat& target) { cv::flip(source, target, 0); });
}

std::function<void()> Reverse(const Page& page) {
  return Into(page.Width(), page.Height(),
              [source = MatOf(page)](cv::Mat& target) { cv::flip(source, target, 1); });
}

std::function<void()> Rotate(const Page& page) {
  return Into(page.Height(), page.Width(), [source = MatOf(page)](cv::Mat& target) {
    cv::rotate(source, target, cv::ROTATE_90_CLOCKWISE);
  });
}

std::function<void()> Crop(const Page& page, Long left, Long top, Long width, Long height) {
  return Into(width, height,
              [source = MatOf(page)(cv::Rect(left, top, width, height))](cv::Mat& target) {
                source.copyTo(target);
              });
}

std::function<void()> Resize(const Page& page, Long width, Long height) {
  const int method = width < page.Width() ? cv::INTER_AREA : cv::INTER_LINEAR;
  return Into(width, height, [source = MatOf(page), method](cv::Mat& target) {
    cv::resize(source, target, target.size(), 0, 0, method);
  });
}

}  // namespace quillet::bench::peer

#else

namespace quillet::bench::peer {

const char* Version() {
  return "none";
}

std::function<void()> Flip(const Page&) {
  return nullptr;
}

std::function<void()> Reverse(const Page&) {
  return nullptr;
}

std::function<void()> Rotate(const Page&) {
  return nullptr;
}

std::function<void()> Crop(const Page&, Long, Long, Long, Long) {
  return nullptr;
}

std::function<void()> Resize(const Page&, Long, Long) {
  return nullptr;
}

}  // namespace quillet::bench::peer

#endif
