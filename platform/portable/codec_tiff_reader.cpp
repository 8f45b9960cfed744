#include <algorithm>
#include <new>
#include <vector>

#include "platform/portable/channel_swap.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_format.h"
#include "platform/portable/codec_tiff.h"

namespace quillet {
namespace {

enum class Opacity { None, Plain, Associated };

template <typename T>
T Field(TIFF* tiff, std::uint32_t tag) {
  T value{};
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

// A sample of up to 16 bits brought to 8.
Byte ToEightBits(std::uint32_t value, std::uint32_t max) noexcept {
  return static_cast<Byte>((value * 255 + max / 2) / max);
}

// Reads the page that libtiff stands on.
class TiffPageReader {
 public:
  TiffPageReader(TIFF* tiff, std::uint64_t fileSize) : m_tiff(tiff) {
    m_width = Field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
    m_height = Field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
    m_bits = Field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
    m_samples = Field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
    m_compression = Field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION);
    m_separate = Field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE;
    if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &m_photometric) == 0) {
      m_photometric = m_samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISWHITE;
    }
    RequireImageSize(m_width, m_height);
    const std::uint16_t format = Field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT);
    if (m_bits < 1 || m_bits > 16 || m_samples < 1 || m_samples > 32 ||
        (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID)) {
      RefuseImage("samples of an unknown kind");
    }
    if (TIFFIsCODECConfigured(m_compression) == 0) RefuseImage("an unknown compression");
    RequireRatio((std::uint64_t{m_width} * m_bits * m_samples + 7) / 8 * m_height, fileSize,
                 MostRatio());
    if (m_photometric == PHOTOMETRIC_YCBCR && m_compression == COMPRESSION_JPEG && !m_separate) {
      TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
      m_photometric = PHOTOMETRIC_RGB;
    }
    FindOpacity();
    // The library would apply it for some kinds of page and not for others.
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    RequireKnownColors();
  }

  Dib Read(PaletteColor background) {
    m_background = background;
    Dib dib(Format());
    if (m_byLibrary) {
      ReadByLibrary(dib);
    } else if (TIFFIsTiled(m_tiff) != 0 || m_separate || HasSmallStrips()) {
      ReadBlocks(dib);
    } else {
      ReadRows(dib);
    }
    return dib;
  }

 private:
  bool IsIndexed() const { return !m_byLibrary && m_samples == 1 && m_bits <= 8; }
  bool IsGray() const {
    return m_photometric == PHOTOMETRIC_MINISBLACK || m_photometric == PHOTOMETRIC_MINISWHITE;
  }

  // How many bytes a byte can stand for.
  std::uint64_t MostRatio() const {
    switch (m_compression) {
      case COMPRESSION_NONE:
        return 1;
      case COMPRESSION_PACKBITS:
        return 64;
      case COMPRESSION_LZW:
        return 4096;
      case COMPRESSION_ADOBE_DEFLATE:
      case COMPRESSION_DEFLATE:
        return 1032;
      default:
        // A bit may stand for a whole line: only the number of pixels is bounded.
        return std::uint64_t{1} << 30;
    }
  }

  void FindOpacity() {
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    if (count < 1 || !kinds) return;
    if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) m_opacity = Opacity::Associated;
    if (kinds[0] == EXTRASAMPLE_UNASSALPHA) m_opacity = Opacity::Plain;
  }

  void RequireKnownColors() {
    const int colors = IsGray() || m_photometric == PHOTOMETRIC_PALETTE ? 1
                       : m_photometric == PHOTOMETRIC_RGB               ? 3
                       : m_photometric == PHOTOMETRIC_SEPARATED         ? 4
                                                                        : 0;
    if (m_photometric == PHOTOMETRIC_PALETTE && (m_bits > 8 || m_samples != 1)) {
      RefuseImage("a palette of more than 8 bits");
    }
    if (colors > m_samples) RefuseImage("too few samples");
    if (m_samples < colors + (m_opacity == Opacity::None ? 0 : 1)) m_opacity = Opacity::None;
    m_colors = colors;
    m_byLibrary = colors == 0 || m_compression == COMPRESSION_OJPEG;
    char reason[1024] = "";
    if (m_byLibrary && TIFFRGBAImageOK(m_tiff, reason) == 0) RefuseImage(reason);
  }

  Dib::Format Format() const {
    Dib::Format format{.width = static_cast<Long>(m_width), .height = static_cast<Long>(m_height)};
    if (IsIndexed()) {
      format.depth = m_bits == 1 || m_bits == 4 ? m_bits : 8;
      format.palette = m_photometric == PHOTOMETRIC_PALETTE ? ColorMap() : GrayPalette(m_bits);
      if (m_photometric == PHOTOMETRIC_MINISWHITE) std::ranges::reverse(format.palette);
    } else if (!m_byLibrary && m_samples == 1) {
      format.depth = 8;
      format.palette = GrayPalette(8);
    } else {
      format.depth = 24;
    }
    const std::uint16_t unit = Field<std::uint16_t>(m_tiff, TIFFTAG_RESOLUTIONUNIT);
    float x = 0;
    float y = 0;
    if (TIFFGetField(m_tiff, TIFFTAG_XRESOLUTION, &x) != 0 &&
        TIFFGetField(m_tiff, TIFFTAG_YRESOLUTION, &y) != 0 && unit != RESUNIT_NONE) {
      const double perInch = unit == RESUNIT_CENTIMETER ? 2.54 : 1;
      format.xPelsPerMeter = DotsPerMeter(x * perInch);
      format.yPelsPerMeter = DotsPerMeter(y * perInch);
    }
    return format;
  }

  std::vector<PaletteColor> ColorMap() const {
    std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
    if (TIFFGetField(m_tiff, TIFFTAG_COLORMAP, &red, &green, &blue) == 0) {
      RefuseImage("no palette");
    }
    const std::size_t count = std::size_t{1} << m_bits;
    // Some writers put 8 bits where 16 belong.
    const auto narrow = [&](const std::uint16_t* values) {
      return std::all_of(values, values + count, [](std::uint16_t value) { return value < 256; });
    };
    const bool eight = narrow(red) && narrow(green) && narrow(blue);
    const auto color = [&](std::uint16_t value) {
      return eight ? static_cast<Byte>(value) : ToEightBits(value, 65535);
    };
    std::vector<PaletteColor> palette;
    for (std::size_t i = 0; i < count; ++i) {
      palette.push_back({color(blue[i]), color(green[i]), color(red[i])});
    }
    return palette;
  }

  bool HasSmallStrips() const {
    constexpr std::uint64_t kSmall = std::uint64_t{1} << 20;
    return TIFFStripSize64(m_tiff) <= kSmall;
  }

  // Large strips row by row: a page in one strip needs no more memory than one in many.
  void ReadRows(Dib& dib) {
    const std::size_t size = static_cast<std::size_t>(TIFFScanlineSize64(m_tiff));
    if (size < SourceRowBytes(m_width, m_samples)) RefuseImage("rows of another size");
    std::vector<Byte> row(size);
    const Byte* const plane = row.data();
    for (std::uint32_t y = 0; y < m_height; ++y) {
      if (TIFFReadScanline(m_tiff, row.data(), y, 0) < 0) RefuseImage("a row is not readable");
      PutRow(&plane, 1, m_width, dib, 0, static_cast<Long>(y));
    }
  }

  // Tiles, small strips, and strips that hold one kind of sample each.
  void ReadBlocks(Dib& dib) {
    const bool tiled = TIFFIsTiled(m_tiff) != 0;
    std::uint32_t blockWidth = m_width;
    std::uint32_t blockHeight = m_height;
    if (tiled) {
      blockWidth = Field<std::uint32_t>(m_tiff, TIFFTAG_TILEWIDTH);
      blockHeight = Field<std::uint32_t>(m_tiff, TIFFTAG_TILELENGTH);
    } else {
      blockHeight = std::min(m_height, Field<std::uint32_t>(m_tiff, TIFFTAG_ROWSPERSTRIP));
    }
    RequireImageSize(blockWidth, blockHeight);
    // Sub-byte pixels are placed by whole bytes.
    if (tiled && blockWidth % 8 != 0) RefuseImage("tiles of an odd size");
    const std::size_t planes = m_separate ? m_samples : 1;
    const std::size_t rowBytes =
        static_cast<std::size_t>(tiled ? TIFFTileRowSize64(m_tiff) : TIFFScanlineSize64(m_tiff));
    const std::uint64_t size = tiled ? TIFFTileSize64(m_tiff) : TIFFStripSize64(m_tiff);
    if (rowBytes < SourceRowBytes(blockWidth, m_separate ? 1 : m_samples) ||
        size / rowBytes < blockHeight || size * planes > std::uint64_t{1} << 32) {
      RefuseImage("blocks of another size");
    }
    std::vector<std::vector<Byte>> buffers(planes,
                                           std::vector<Byte>(static_cast<std::size_t>(size)));
    std::vector<const Byte*> rows(planes);
    for (std::uint32_t y = 0; y < m_height; y += blockHeight) {
      for (std::uint32_t x = 0; x < m_width; x += blockWidth) {
        const std::uint32_t height = std::min(blockHeight, m_height - y);
        for (std::size_t plane = 0; plane < planes; ++plane) {
          ReadBlock(buffers[plane], x, y, static_cast<std::uint16_t>(plane), tiled,
                    tiled ? blockHeight : height, rowBytes);
        }
        for (std::uint32_t row = 0; row < height; ++row) {
          for (std::size_t plane = 0; plane < planes; ++plane) {
            rows[plane] = buffers[plane].data() + row * rowBytes;
          }
          PutRow(rows.data(), planes, std::min(blockWidth, m_width - x), dib, static_cast<Long>(x),
                 static_cast<Long>(y + row));
        }
      }
    }
  }

  void ReadBlock(std::vector<Byte>& buffer, std::uint32_t x, std::uint32_t y, std::uint16_t plane,
                 bool tiled, std::uint32_t rows, std::size_t rowBytes) {
    const tmsize_t size = static_cast<tmsize_t>(buffer.size());
    const tmsize_t done =
        tiled
            ? TIFFReadEncodedTile(m_tiff, TIFFComputeTile(m_tiff, x, y, 0, plane), buffer.data(),
                                  size)
            : TIFFReadEncodedStrip(m_tiff, TIFFComputeStrip(m_tiff, y, plane), buffer.data(), size);
    if (done < static_cast<tmsize_t>(rows * rowBytes)) RefuseImage("a block is not readable");
  }

  std::size_t SourceRowBytes(std::uint32_t width, int samples) const {
    return static_cast<std::size_t>(
        (std::uint64_t{width} * m_bits * static_cast<unsigned>(samples) + 7) / 8);
  }

  // Converts `count` pixels, in one plane or one for each kind of sample, to the picture's at (x,
  // y).
  void PutRow(const Byte* const* planes, std::size_t planeCount, std::uint32_t count, Dib& dib,
              Long x, Long y) {
    Byte* const row = dib.WritableRow(y);
    if (IsIndexed() && m_bits == dib.Depth()) {
      const std::size_t bytes = static_cast<std::size_t>(DibRowBytes(count, m_bits));
      Byte* const target = row + std::int64_t{x} * m_bits / 8;
      std::copy_n(planes[0], bytes, target);
      const unsigned used = count * m_bits % 8;
      if (used != 0) target[bytes - 1] &= static_cast<Byte>(0xFF00 >> used);
      return;
    }
    if (m_bits == 8 && m_samples == 3 && m_colors == 3 && planeCount == 1) {
      SwapRedAndBlue(planes[0], row + std::ptrdiff_t{x} * 3, count);
      return;
    }
    const std::size_t values = std::size_t{count} * m_samples;
    m_values.resize(values);
    if (planeCount == 1) {
      Unpack(planes[0], values, m_values.data(), 1);
    } else {
      for (std::size_t plane = 0; plane < planeCount; ++plane) {
        Unpack(planes[plane], count, m_values.data() + plane, m_samples);
      }
    }
    if (dib.Depth() == 8) {
      std::copy_n(m_values.begin(), count, row + x);
      return;
    }
    Byte* target = row + std::ptrdiff_t{x} * 3;
    const Byte* pixel = m_values.data();
    for (std::uint32_t i = 0; i < count; ++i, pixel += m_samples, target += 3)
      PutPixel(pixel, target);
  }

  void PutPixel(const Byte* pixel, Byte* target) const {
    if (m_colors == 4) {
      const int light = 255 - pixel[3];
      for (int c = 0; c < 3; ++c) target[c] = Over(255 - pixel[2 - c], light, 0);
    } else {
      for (int c = 0; c < 3; ++c) target[c] = pixel[m_colors == 3 ? 2 - c : 0];
    }
    if (m_opacity == Opacity::None) return;
    const int alpha = pixel[m_colors];
    const Byte below[] = {m_background.blue, m_background.green, m_background.red};
    for (int c = 0; c < 3; ++c) {
      target[c] = m_opacity == Opacity::Plain
                      ? Over(target[c], alpha, below[c])
                      : static_cast<Byte>(std::min(target[c] + Over(0, alpha, below[c]), 255));
    }
  }

  // Brings packed samples to 8 bits; indexes stay as they are.
  void Unpack(const Byte* source, std::size_t count, Byte* target, std::size_t step) const {
    const std::uint32_t max = (1u << m_bits) - 1;
    // A single sample of up to 8 bits is an index, and the palette knows what is white.
    const bool index = IsIndexed();
    const Byte invert = m_photometric == PHOTOMETRIC_MINISWHITE && !index ? 255 : 0;
    if (m_bits == 8) {
      for (std::size_t i = 0; i < count; ++i, target += step) *target = source[i] ^ invert;
    } else if (m_bits == 16) {
      const auto* const words = reinterpret_cast<const std::uint16_t*>(source);
      for (std::size_t i = 0; i < count; ++i, target += step) {
        *target = ToEightBits(words[i], max) ^ invert;
      }
    } else {
      std::uint32_t bits = 0;
      int held = 0;
      for (std::size_t i = 0; i < count; ++i, target += step) {
        for (; held < m_bits; held += 8) bits = bits << 8 | *source++;
        held -= m_bits;
        const std::uint32_t value = bits >> held & max;
        *target = index ? static_cast<Byte>(value) : ToEightBits(value, max) ^ invert;
      }
    }
  }

  // Colours that only the library converts, strip by strip or tile by tile; its rows go bottom-up.
  void ReadByLibrary(Dib& dib) {
    const bool tiled = TIFFIsTiled(m_tiff) != 0;
    std::uint32_t blockWidth = m_width;
    std::uint32_t blockHeight = m_height;
    if (tiled) {
      blockWidth = Field<std::uint32_t>(m_tiff, TIFFTAG_TILEWIDTH);
      blockHeight = Field<std::uint32_t>(m_tiff, TIFFTAG_TILELENGTH);
    } else {
      blockHeight = std::min(m_height, Field<std::uint32_t>(m_tiff, TIFFTAG_ROWSPERSTRIP));
    }
    RequireImageSize(blockWidth, blockHeight);
    std::vector<std::uint32_t> raster(std::size_t{blockWidth} * blockHeight);
    for (std::uint32_t y = 0; y < m_height; y += blockHeight) {
      for (std::uint32_t x = 0; x < m_width; x += blockWidth) {
        const int done = tiled ? TIFFReadRGBATileExt(m_tiff, x, y, raster.data(), 1)
                               : TIFFReadRGBAStripExt(m_tiff, y, raster.data(), 1);
        if (done == 0) RefuseImage("a block is not readable");
        const std::uint32_t height = std::min(blockHeight, m_height - y);
        const std::uint32_t last = (tiled ? blockHeight : height) - 1;
        for (std::uint32_t row = 0; row < height; ++row) {
          const std::uint32_t* pixel = raster.data() + std::size_t{last - row} * blockWidth;
          Byte* target =
              dib.WritableRow(static_cast<Long>(y + row)) + static_cast<std::ptrdiff_t>(x) * 3;
          const std::uint32_t count = std::min(blockWidth, m_width - x);
          for (std::uint32_t i = 0; i < count; ++i, ++pixel, target += 3) {
            target[0] = static_cast<Byte>(TIFFGetB(*pixel));
            target[1] = static_cast<Byte>(TIFFGetG(*pixel));
            target[2] = static_cast<Byte>(TIFFGetR(*pixel));
          }
        }
      }
    }
  }

  TIFF* m_tiff;
  std::uint32_t m_width;
  std::uint32_t m_height;
  std::uint16_t m_bits;
  std::uint16_t m_samples;
  std::uint16_t m_compression;
  std::uint16_t m_photometric = 0;
  bool m_separate;
  Opacity m_opacity = Opacity::None;
  int m_colors = 0;
  bool m_byLibrary = false;
  PaletteColor m_background;
  std::vector<Byte> m_values;
};

UniqueTiff OpenPage(ByteSource& source) {
  UniqueTiff tiff = OpenTiff(source);
  if (!tiff) RefuseImage("not readable as TIFF");
  return tiff;
}

}  // namespace

void CheckTiff(ByteSource& source) {
  const UniqueTiff tiff = OpenPage(source);
  TiffPageReader(tiff.get(), source.Size());
}

Dib ReadTiff(ByteSource& source, PaletteColor background) {
  const UniqueTiff tiff = OpenPage(source);
  return TiffPageReader(tiff.get(), source.Size()).Read(background);
}

Dib ReadTiffPage(ByteSource& source, std::uint64_t directory, PaletteColor background) {
  const UniqueTiff tiff = OpenPage(source);
  if (TIFFSetSubDirectory(tiff.get(), directory) == 0) RefuseImage("a page is not readable");
  return TiffPageReader(tiff.get(), source.Size()).Read(background);
}

}  // namespace quillet
