#include "platform/portable/codec_gif.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/portable/bitmap_convert.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_format.h"
#include "platform/portable/color_quantizer.h"

namespace quillet {
namespace {

// Where each pass of an interlaced frame starts, and how far its rows lie apart.
struct Pass {
  int first, step;
};
constexpr Pass kPlain[] = {{0, 1}};
constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};

class GifReader {
 public:
  explicit GifReader(ByteSource& source)
      : m_encodedSize(source.Size()), m_reader(source), m_gif(DGifOpen(this, ReadBytes, nullptr)) {
    if (!m_gif) Fail();
  }
  GifReader(const GifReader&) = delete;
  GifReader& operator=(const GifReader&) = delete;
  ~GifReader() {
    if (m_gif) DGifCloseFile(m_gif, nullptr);
  }

  Dib Read(PaletteColor background) {
    FindFrame();
    const GifImageDesc& frame = m_gif->Image;
    const ColorMapObject* const colors = frame.ColorMap ? frame.ColorMap : m_gif->SColorMap;
    if (!colors) RefuseImage("no palette");
    Long width = m_gif->SWidth;
    Long height = m_gif->SHeight;
    if (width == 0 || height == 0) {
      width = frame.Left + frame.Width;
      height = frame.Top + frame.Height;
    }
    RequireImageSize(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
    if (frame.Width < 1 || frame.Height < 1) RefuseImage("a size below one pixel");
    // A code of 12 bits stands for 4096 pixels at the most. A canvas may be larger than its frame,
    // but not without end.
    constexpr std::uint64_t kPixelsPerByte = 4096;
    constexpr std::uint64_t kFreeCanvas = std::uint64_t{1} << 24;
    RequireRatio(static_cast<std::uint64_t>(frame.Width) * static_cast<std::uint64_t>(frame.Height),
                 m_encodedSize, kPixelsPerByte);
    const std::uint64_t canvas =
        static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (canvas > kFreeCanvas) RequireRatio(canvas, m_encodedSize, kPixelsPerByte);

    Dib::Format format{.width = width, .height = height};
    for (int i = 0; i < colors->ColorCount; ++i) {
      const GifColorType& color = colors->Colors[i];
      format.palette.push_back({color.Blue, color.Green, color.Red});
    }
    const bool covers = frame.Left <= 0 && frame.Top <= 0 && frame.Left + frame.Width >= width &&
                        frame.Top + frame.Height >= height;
    const std::optional<Byte> below = PlaceBackground(format.palette, background, covers);
    format.depth = DepthFor(format.palette.size());
    if (below) return ReadFrame(std::move(format), *below);
    return OnColors(std::move(format), background);
  }

 private:
  [[noreturn]] void Fail() const {
    if (m_pending) std::rethrow_exception(m_pending);
    RefuseImage("not readable as GIF");
  }
  void Require(int result) const {
    if (result == GIF_ERROR) Fail();
  }

  static int ReadBytes(GifFileType* gif, GifByteType* target, int count) {
    GifReader& self = *static_cast<GifReader*>(gif->UserData);
    try {
      return static_cast<int>(self.m_reader.Read({target, static_cast<std::size_t>(count)}));
    } catch (...) {
      self.m_pending = std::current_exception();
      return 0;
    }
  }

  // Up to the first frame's pixels; notes which index is transparent.
  void FindFrame() {
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    for (;;) {
      Require(DGifGetRecordType(m_gif, &type));
      if (type == TERMINATE_RECORD_TYPE) RefuseImage("no frame");
      if (type == IMAGE_DESC_RECORD_TYPE) break;
      int code = 0;
      GifByteType* block = nullptr;
      Require(DGifGetExtension(m_gif, &code, &block));
      GraphicsControlBlock control{};
      if (code == GRAPHICS_EXT_FUNC_CODE && block && block[0] == 4 &&
          DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        m_transparent = control.TransparentColor;
      }
      while (block) Require(DGifGetExtensionNext(m_gif, &block));
    }
    // Fails for a frame whose pixels cannot be counted, too.
    Require(DGifGetImageDesc(m_gif));
  }

  // Makes the background an index of the palette; nothing when there is no room for it.
  std::optional<Byte> PlaceBackground(std::vector<PaletteColor>& palette, PaletteColor background,
                                      bool covers) const {
    if (m_transparent >= 0) {
      if (static_cast<std::size_t>(m_transparent) >= palette.size()) {
        palette.resize(static_cast<std::size_t>(m_transparent) + 1);
      }
      palette[static_cast<std::size_t>(m_transparent)] = background;
      return static_cast<Byte>(m_transparent);
    }
    if (covers) return Byte{0};
    const auto found = std::find(palette.begin(), palette.end(), background);
    const std::size_t at = static_cast<std::size_t>(found - palette.begin());
    if (at == 256) return std::nullopt;
    if (found == palette.end()) palette.push_back(background);
    return static_cast<Byte>(at);
  }

  // Calls `place` with the canvas row, and the frame's pixels.
  template <typename Place>
  void ForEachRow(Place&& place) {
    const GifImageDesc& frame = m_gif->Image;
    std::vector<GifPixelType> pixels(static_cast<std::size_t>(frame.Width));
    for (const Pass& pass : frame.Interlace ? std::span<const Pass>(kInterlaced) : kPlain) {
      for (int y = pass.first; y < frame.Height; y += pass.step) {
        Require(DGifGetLine(m_gif, pixels.data(), frame.Width));
        place(frame.Top + y, pixels);
      }
    }
  }

  Dib ReadFrame(Dib::Format format, Byte below) {
    const int mask = (1 << format.depth) - 1;
    Dib dib(std::move(format));
    const Long left = m_gif->Image.Left;
    const Long count = std::clamp(dib.Width() - left, 0, m_gif->Image.Width);
    std::vector<Byte> row(static_cast<std::size_t>(dib.Width()), below);
    for (Long y = 0; y < dib.Height(); ++y) {
      PackIndexes(row.data(), dib.Width(), dib.Depth(), dib.WritableRow(y));
    }
    ForEachRow([&](Long y, const std::vector<GifPixelType>& pixels) {
      if (y >= dib.Height()) return;
      for (Long x = 0; x < count; ++x) {
        row[static_cast<std::size_t>(left + x)] =
            static_cast<Byte>(pixels[static_cast<std::size_t>(x)] & mask);
      }
      PackIndexes(row.data(), dib.Width(), dib.Depth(), dib.WritableRow(y));
    });
    return dib;
  }

  Dib OnColors(Dib::Format format, PaletteColor background) {
    const std::vector<PaletteColor> palette = std::exchange(format.palette, {});
    format.depth = 24;
    Dib dib(std::move(format));
    const auto put = [&](Long x, Long y, PaletteColor color) {
      Byte* const pixel = dib.WritableRow(y) + std::ptrdiff_t{x} * 3;
      pixel[0] = color.blue;
      pixel[1] = color.green;
      pixel[2] = color.red;
    };
    for (Long y = 0; y < dib.Height(); ++y) {
      for (Long x = 0; x < dib.Width(); ++x) put(x, y, background);
    }
    const Long left = m_gif->Image.Left;
    const Long count = std::clamp(dib.Width() - left, 0, m_gif->Image.Width);
    ForEachRow([&](Long y, const std::vector<GifPixelType>& pixels) {
      if (y >= dib.Height()) return;
      for (Long x = 0; x < count; ++x)
        put(left + x, y, palette[pixels[static_cast<std::size_t>(x)]]);
    });
    return dib;
  }

  std::uint64_t m_encodedSize;
  ByteReader m_reader;
  std::exception_ptr m_pending;
  int m_transparent = NO_TRANSPARENT_COLOR;
  GifFileType* m_gif;
};

class GifWriter {
 public:
  explicit GifWriter(ReplacingFile& file)
      : m_file(file), m_gif(EGifOpen(this, WriteBytes, nullptr)) {
    if (!m_gif) throw std::bad_alloc();
  }
  GifWriter(const GifWriter&) = delete;
  GifWriter& operator=(const GifWriter&) = delete;
  ~GifWriter() {
    if (m_gif) EGifCloseFile(m_gif, nullptr);
  }

  void Write(const Dib& dib) {
    const std::vector<PaletteColor> palette = WholePalette(dib.GetFormat());
    std::vector<GifColorType> colors;
    for (const PaletteColor& color : palette)
      colors.push_back({color.red, color.green, color.blue});
    const std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)> map(
        GifMakeMapObject(static_cast<int>(colors.size()), colors.data()), GifFreeMapObject);
    if (!map) throw std::bad_alloc();
    const int bits = map->BitsPerPixel;
    Require(EGifPutScreenDesc(m_gif, dib.Width(), dib.Height(), bits, 0, map.get()));
    Require(EGifPutImageDesc(m_gif, 0, 0, dib.Width(), dib.Height(), false, nullptr));
    std::vector<Byte> row(static_cast<std::size_t>(dib.Width()));
    for (Long y = 0; y < dib.Height(); ++y) {
      UnpackIndexes(dib.Row(y), dib.Width(), dib.Depth(), row.data());
      Require(EGifPutLine(m_gif, row.data(), dib.Width()));
    }
    const int closed = EGifCloseFile(std::exchange(m_gif, nullptr), nullptr);
    Require(closed);
    if (!m_buffer.empty()) m_file.Write(m_buffer);
  }

 private:
  void Require(int result) const {
    if (m_pending) std::rethrow_exception(m_pending);
    if (result == GIF_ERROR) throw CodecError(CodecStatus::GenericError, "GIF cannot be written");
  }

  // The library writes blocks of 255 bytes.
  static int WriteBytes(GifFileType* gif, const GifByteType* bytes, int count) {
    constexpr std::size_t kBufferSize = std::size_t{64} << 10;
    GifWriter& self = *static_cast<GifWriter*>(gif->UserData);
    try {
      self.m_buffer.insert(self.m_buffer.end(), bytes, bytes + count);
      if (self.m_buffer.size() >= kBufferSize) {
        self.m_file.Write(self.m_buffer);
        self.m_buffer.clear();
      }
      return count;
    } catch (...) {
      self.m_pending = std::current_exception();
      return 0;
    }
  }

  ReplacingFile& m_file;
  std::vector<Byte> m_buffer;
  std::exception_ptr m_pending;
  GifFileType* m_gif;
};

}  // namespace

Dib ReadGif(ByteSource& source, PaletteColor background) {
  return GifReader(source).Read(background);
}

void WriteGif(const Dib& dib, ReplacingFile& file) {
  constexpr Long kMostSize = 65535;
  if (dib.Width() > kMostSize || dib.Height() > kMostSize) {
    throw CodecError(CodecStatus::ValueOverflow);
  }
  std::optional<Dib> indexed = ExactPalette(dib);
  if (!indexed) indexed = AdaptivePalette(dib);
  GifWriter(file).Write(*indexed);
}

}  // namespace quillet
