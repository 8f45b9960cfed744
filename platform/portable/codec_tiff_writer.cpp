#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "platform/portable/bitmap_convert.h"
#include "platform/portable/channel_swap.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_format.h"
#include "platform/portable/codec_tiff.h"
#include "platform/portable/lzw_encoder.h"

namespace quillet {
namespace {

void Require(bool done) {
  if (!done) throw CodecError(CodecStatus::Win32Error, "TIFF cannot be written");
}

template <typename T>
void Set(TIFF* tiff, std::uint32_t tag, T value) {
  Require(TIFFSetField(tiff, tag, value) != 0);
}

// The unit in which the picture's resolution comes back exactly.
void SetResolution(TIFF* tiff, const Dib::Format& format) {
  const Long x = format.xPelsPerMeter;
  const Long y = format.yPelsPerMeter;
  if (x <= 0 || y <= 0) return;
  const Long xInches = WholeDotsPerInch(x);
  const Long yInches = WholeDotsPerInch(y);
  const bool inches = xInches != 0 && yInches != 0;
  Set(tiff, TIFFTAG_RESOLUTIONUNIT, inches ? RESUNIT_INCH : RESUNIT_CENTIMETER);
  Set(tiff, TIFFTAG_XRESOLUTION, inches ? double{1} * xInches : x / 100.0);
  Set(tiff, TIFFTAG_YRESOLUTION, inches ? double{1} * yInches : y / 100.0);
}

void SetColorMap(TIFF* tiff, const Dib::Format& format) {
  std::array<std::array<std::uint16_t, 256>, 3> channels{};
  std::size_t i = 0;
  for (const PaletteColor& color : WholePalette(format)) {
    channels[0][i] = static_cast<std::uint16_t>(color.red * 257);
    channels[1][i] = static_cast<std::uint16_t>(color.green * 257);
    channels[2][i] = static_cast<std::uint16_t>(color.blue * 257);
    ++i;
  }
  Require(TIFFSetField(tiff, TIFFTAG_COLORMAP, channels[0].data(), channels[1].data(),
                       channels[2].data()) != 0);
}

bool IsWhiteThenBlack(const Dib::Format& format) {
  std::vector<PaletteColor> turned = GrayPalette(1);
  std::ranges::reverse(turned);
  return format.depth == 1 && format.palette == turned;
}

// The horizontal predictor: each sample less the one of the pixel before it.
void TakeDifferences(const Byte* __restrict row, std::size_t count, std::size_t samples,
                     Byte* __restrict target) {
  std::copy_n(row, samples, target);
  for (std::size_t i = samples; i < count; ++i)
    target[i] = static_cast<Byte>(row[i] - row[i - samples]);
}

}  // namespace

void WriteTiffPage(TIFF* tiff, const Dib& dib) {
  const Dib::Format& format = dib.GetFormat();
  const bool indexed = format.depth <= 8;
  const bool gray = IsGrayPalette(format);
  const bool inverted = IsWhiteThenBlack(format);
  const bool bilevel = format.depth == 1 && (gray || inverted);
  Set(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(format.width));
  Set(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(format.height));
  Set(tiff, TIFFTAG_BITSPERSAMPLE, indexed ? format.depth : 8);
  Set(tiff, TIFFTAG_SAMPLESPERPIXEL, indexed ? 1 : 3);
  Set(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  Set(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  Set(tiff, TIFFTAG_PHOTOMETRIC,
      !indexed   ? PHOTOMETRIC_RGB
      : gray     ? PHOTOMETRIC_MINISBLACK
      : inverted ? PHOTOMETRIC_MINISWHITE
                 : PHOTOMETRIC_PALETTE);
  Set(tiff, TIFFTAG_COMPRESSION, bilevel ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW);
  // Neighbouring grey levels and channels are alike, indexes of a palette are not.
  const bool predicted = !indexed || (gray && format.depth == 8);
  if (predicted) Set(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  if (indexed && !gray && !inverted) SetColorMap(tiff, format);
  SetResolution(tiff, format);

  const std::size_t rowBytes =
      indexed ? dib.RowBytes() : static_cast<std::size_t>(format.width) * 3;
  // Small enough that a strip stays in the caches until it is coded.
  constexpr std::size_t kStripSize = std::size_t{128} << 10;
  const Long rows = bilevel
                        ? format.height
                        : static_cast<Long>(std::clamp<std::size_t>(
                              kStripSize / rowBytes, 1, static_cast<std::size_t>(format.height)));
  Set(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));

  std::vector<Byte> strip(rowBytes * static_cast<std::size_t>(rows));
  std::vector<Byte> converted(format.depth > 24 || format.depth == 16 ? rowBytes : 0);
  std::vector<Byte> swapped(indexed ? 0 : rowBytes);
  const RowConverter converter(format);
  LzwEncoder encoder;
  for (Long y = 0; y < format.height; y += rows) {
    const Long count = std::min(rows, format.height - y);
    Byte* target = strip.data();
    for (Long i = 0; i < count; ++i, target += rowBytes) {
      const Byte* source = dib.Row(y + i);
      if (!converted.empty()) {
        converter.To24(source, 0, format.width, converted.data());
        source = converted.data();
      }
      if (!indexed) {
        SwapRedAndBlue(source, swapped.data(), static_cast<std::size_t>(format.width));
        source = swapped.data();
      }
      if (predicted)
        TakeDifferences(source, rowBytes, indexed ? 1 : 3, target);
      else
        std::copy_n(source, rowBytes, target);
    }
    const auto number = static_cast<std::uint32_t>(y / rows);
    const std::span<Byte> bytes(strip.data(), target);
    if (bilevel) {
      Require(TIFFWriteEncodedStrip(tiff, number, bytes.data(), std::ssize(bytes)) >= 0);
    } else {
      const std::span<Byte> codes = encoder.Encode(bytes);
      Require(TIFFWriteRawStrip(tiff, number, codes.data(), std::ssize(codes)) >= 0);
    }
  }
  Require(TIFFWriteDirectory(tiff) != 0);
}

void WriteTiff(const Dib& dib, ReplacingFile& file) {
  const UniqueTiff tiff = OpenTiff(file.Descriptor(), "w");
  Require(tiff != nullptr);
  WriteTiffPage(tiff.get(), dib);
}

}  // namespace quillet
