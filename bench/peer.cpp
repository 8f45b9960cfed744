#include "bench/peer.h"

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#ifdef QUILLET_BENCH_OPENCV

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
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
  return [target = std::make_shared<Target>(width, height), call]() mutable { call(target->mat); };
}

std::function<void()> LightenMat(const Page& page, const cv::Mat& from, double factor) {
  return Into(page.Width(), page.Height(),
              [=, source = from, hls = cv::Mat()](cv::Mat& target) mutable {
                cv::cvtColor(source, hls, cv::COLOR_BGR2HLS);
                cv::multiply(hls, cv::Scalar(1, factor, 1), hls);
                cv::cvtColor(hls, target, cv::COLOR_HLS2BGR);
              });
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

std::function<void()> Invert(const Page& page) {
  const auto target = std::make_shared<Target>(page.Width(), page.Height());
  MatOf(page).copyTo(target->mat);
  cv::setNumThreads(1);
  return [target] { cv::bitwise_not(target->mat, target->mat); };
}

std::function<void()> GrayScale(const Page& page) {
  return Into(page.Width(), page.Height(),
              [source = MatOf(page), gray = cv::Mat()](cv::Mat& target) mutable {
                cv::cvtColor(source, gray, cv::COLOR_BGR2GRAY);
                cv::cvtColor(gray, target, cv::COLOR_GRAY2BGR);
              });
}

std::function<void()> BlackWhite(const Page& page) {
  return Into(page.Width(), page.Height(),
              [source = MatOf(page), dark = cv::Mat()](cv::Mat& target) mutable {
                cv::inRange(source, cv::Scalar::all(0), cv::Scalar::all(191), dark);
                cv::bitwise_not(dark, dark);
                cv::cvtColor(dark, target, cv::COLOR_GRAY2BGR);
              });
}

std::function<void()> Scale(const Page& page, double factor, double offset) {
  return Into(page.Width(), page.Height(), [=, source = MatOf(page)](cv::Mat& target) {
    source.convertTo(target, CV_8UC3, factor, offset);
  });
}

std::function<void()> Lighten(const Page& page, double factor) {
  return LightenMat(page, MatOf(page), factor);
}

std::function<void()> LightenNoise(const Page& page, double factor) {
  cv::Mat noise(page.Height(), page.Width(), CV_8UC3);
  cv::randu(noise, cv::Scalar::all(0), cv::Scalar::all(256));
  return LightenMat(page, noise, factor);
}

std::function<void()> Filter(const Page& page, std::array<float, 9> kernel) {
  return Into(page.Width(), page.Height(), [=, source = MatOf(page)](cv::Mat& target) {
    cv::filter2D(source, target, -1, cv::Mat(3, 3, CV_32F, const_cast<float*>(kernel.data())));
  });
}

std::function<void()> WriteImage(const Page& page, std::string fileName) {
  return [source = MatOf(page), fileName = std::move(fileName)] {
    const bool jpeg = fileName.ends_with(".jpg");
    cv::imwrite(fileName, source,
                jpeg ? std::vector<int>{cv::IMWRITE_JPEG_QUALITY, 75} : std::vector<int>{});
  };
}

std::function<void()> ReadImage(std::string fileName) {
  return [fileName = std::move(fileName)] {
    if (cv::imread(fileName, cv::IMREAD_COLOR).empty()) throw std::runtime_error("not read");
  };
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

std::function<void()> Invert(const Page&) {
  return nullptr;
}

std::function<void()> GrayScale(const Page&) {
  return nullptr;
}

std::function<void()> BlackWhite(const Page&) {
  return nullptr;
}

std::function<void()> Scale(const Page&, double, double) {
  return nullptr;
}

std::function<void()> Lighten(const Page&, double) {
  return nullptr;
}

std::function<void()> LightenNoise(const Page&, double) {
  return nullptr;
}

std::function<void()> Filter(const Page&, std::array<float, 9>) {
  return nullptr;
}

std::function<void()> WriteImage(const Page&, std::string) {
  return nullptr;
}

std::function<void()> ReadImage(std::string) {
  return nullptr;
}

}  // namespace quillet::bench::peer

#endif

namespace quillet::bench::peer {

std::function<void()> Compare(const Page& page) {
  const auto copy = std::make_shared<PixelMemory>(page.ByteCount());
  std::memcpy(copy->Data(), page.Pixels(), page.ByteCount());
  return [copy, pixels = page.Pixels()] {
    if (std::memcmp(copy->Data(), pixels, copy->Size()) != 0)
      throw std::logic_error("equal pages differ");
  };
}

}  // namespace quillet::bench::peer
