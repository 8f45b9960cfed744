#include <stdexcept>

#include "host/png_encoder.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"

namespace quillet {
namespace {

class GdiPlus {
 public:
  GdiPlus() {
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&m_token, &input, nullptr) != Gdiplus::Ok)
      throw std::runtime_error("GDI+ does not start");
  }
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;
  ~GdiPlus() { Gdiplus::GdiplusShutdown(m_token); }

 private:
  ULONG_PTR m_token = 0;
};

// The system's PNG encoder, image/png.
constexpr CLSID kPngEncoder{
    0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

void Fill(Gdiplus::Bitmap& bitmap, const Snapshot& snapshot) {
  const Gdiplus::Rect whole(0, 0, snapshot.width, snapshot.height);
  Gdiplus::BitmapData data;
  if (bitmap.LockBits(&whole, Gdiplus::ImageLockModeWrite, PixelFormat24bppRGB, &data) !=
      Gdiplus::Ok)
    throw std::runtime_error("there is not enough memory");
  const Byte* rgb = snapshot.rgb.data();
  for (int y = 0; y < snapshot.height; ++y) {
    Byte* bgr = static_cast<Byte*>(data.Scan0) + static_cast<std::ptrdiff_t>(y) * data.Stride;
    for (int x = 0; x < snapshot.width; ++x, rgb += 3, bgr += 3) {
      bgr[0] = rgb[2];
      bgr[1] = rgb[1];
      bgr[2] = rgb[0];
    }
  }
  bitmap.UnlockBits(&data);
}

std::vector<char> Content(IStream& stream) {
  STATSTG state{};
  const LARGE_INTEGER start{};
  if (FAILED(stream.Stat(&state, STATFLAG_NONAME)) ||
      FAILED(stream.Seek(start, STREAM_SEEK_SET, nullptr)))
    throw std::runtime_error("the encoded picture cannot be read");
  std::vector<char> content(static_cast<std::size_t>(state.cbSize.QuadPart));
  ULONG read = 0;
  stream.Read(content.data(), static_cast<ULONG>(content.size()), &read);
  content.resize(read);
  return content;
}

}  // namespace

std::vector<char> EncodePng(const Snapshot& snapshot) {
  const GdiPlus started;
  Gdiplus::Bitmap bitmap(snapshot.width, snapshot.height, PixelFormat24bppRGB);
  Fill(bitmap, snapshot);
  ComPtr<IStream> stream;
  if (FAILED(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive())) ||
      bitmap.Save(stream.get(), &kPngEncoder, nullptr) != Gdiplus::Ok)
    throw std::runtime_error("the system does not encode the picture");
  return Content(*stream.get());
}

}  // namespace quillet
