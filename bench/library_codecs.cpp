#include "bench/library_codecs.h"

#include <cstdio>
// libjpeg's header needs the one above.
#include <gif_lib.h>
#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

namespace quillet::bench::library {
namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

void Require(bool done) {
  if (!done) throw std::runtime_error("a library failed");
}

UniqueFile Open(const std::string& fileName, const char* mode) {
  UniqueFile file(std::fopen(fileName.c_str(), mode));
  Require(file != nullptr);
  return file;
}

void SwapRedAndBlue(const Byte* source, Byte* target, Long count) {
  for (Long x = 0; x < count; ++x, source += 3, target += 3) {
    const Byte first = source[0];
    target[0] = source[2];
    target[1] = source[1];
    target[2] = first;
  }
}

constexpr std::uint32_t kStripSize = 256 << 10;

}  // namespace

void WriteJpeg(const Dib& pixels, const std::string& fileName) {
  const UniqueFile file = Open(fileName, "wb");
  jpeg_compress_struct info;
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  jpeg_stdio_dest(&info, file.get());
  info.image_width = static_cast<JDIMENSION>(pixels.Width());
  info.image_height = static_cast<JDIMENSION>(pixels.Height());
  info.input_components = 3;
  info.in_color_space = JCS_EXT_BGR;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 75, TRUE);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = const_cast<Byte*>(pixels.Row(static_cast<Long>(info.next_scanline)));
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
}

void ReadJpeg(const std::string& fileName, Dib& pixels) {
  const UniqueFile file = Open(fileName, "rb");
  jpeg_decompress_struct info;
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_stdio_src(&info, file.get());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_EXT_BGR;
  jpeg_start_decompress(&info);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = pixels.WritableRow(static_cast<Long>(info.output_scanline));
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
}

void WritePng(const Dib& pixels, const std::string& fileName) {
  const UniqueFile file = Open(fileName, "wb");
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file.get());
  png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.Width()),
               static_cast<png_uint_32>(pixels.Height()), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, 1);
  png_set_filter(png, 0, PNG_FILTER_SUB);
  png_write_info(png, info);
  png_set_bgr(png);
  for (Long y = 0; y < pixels.Height(); ++y) png_write_row(png, pixels.Row(y));
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
}

void ReadPng(const std::string& fileName, Dib& pixels) {
  const UniqueFile file = Open(fileName, "rb");
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file.get());
  png_read_info(png, info);
  png_set_bgr(png);
  for (Long y = 0; y < pixels.Height(); ++y) png_read_row(png, pixels.WritableRow(y), nullptr);
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
}

void WriteTiff(const Dib& pixels, const std::string& fileName) {
  TIFF* const tiff = TIFFOpen(fileName.c_str(), "w");
  Require(tiff != nullptr);
  const Long rowBytes = pixels.Width() * 3;
  const Long rows = static_cast<Long>(kStripSize) / rowBytes;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, pixels.Width());
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, pixels.Height());
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rows);
  std::vector<Byte> strip(static_cast<std::size_t>(rows * rowBytes));
  for (Long y = 0; y < pixels.Height(); y += rows) {
    const Long count = std::min(rows, pixels.Height() - y);
    for (Long i = 0; i < count; ++i) {
      SwapRedAndBlue(pixels.Row(y + i), strip.data() + i * rowBytes, pixels.Width());
    }
    TIFFWriteEncodedStrip(tiff, static_cast<std::uint32_t>(y / rows), strip.data(),
                          tmsize_t{count} * rowBytes);
  }
  TIFFClose(tiff);
}

void ReadTiff(const std::string& fileName, Dib& pixels) {
  TIFF* const tiff = TIFFOpen(fileName.c_str(), "r");
  Require(tiff != nullptr);
  const Long rowBytes = pixels.Width() * 3;
  std::uint32_t rows = 0;
  TIFFGetField(tiff, TIFFTAG_ROWSPERSTRIP, &rows);
  std::vector<Byte> strip(static_cast<std::size_t>(TIFFStripSize(tiff)));
  Long y = 0;
  for (std::uint32_t i = 0; i < TIFFNumberOfStrips(tiff); ++i) {
    TIFFReadEncodedStrip(tiff, i, strip.data(), static_cast<tmsize_t>(strip.size()));
    const Long count = std::min(static_cast<Long>(rows), pixels.Height() - y);
    for (Long row = 0; row < count; ++row, ++y) {
      SwapRedAndBlue(strip.data() + row * rowBytes, pixels.WritableRow(y), pixels.Width());
    }
  }
  TIFFClose(tiff);
}

void WriteGif(const Dib& pixels, const std::string& fileName) {
  GifFileType* const gif = EGifOpenFileName(fileName.c_str(), false, nullptr);
  Require(gif != nullptr);
  ColorMapObject* const colors = GifMakeMapObject(256, nullptr);
  const std::vector<PaletteColor>& palette = pixels.GetFormat().palette;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    colors->Colors[i] = {palette[i].red, palette[i].green, palette[i].blue};
  }
  EGifPutScreenDesc(gif, pixels.Width(), pixels.Height(), 8, 0, colors);
  EGifPutImageDesc(gif, 0, 0, pixels.Width(), pixels.Height(), false, nullptr);
  for (Long y = 0; y < pixels.Height(); ++y) {
    // The library clears bits beyond the palette's depth in the caller's row: here none.
    EGifPutLine(gif, const_cast<Byte*>(pixels.Row(y)), pixels.Width());
  }
  EGifCloseFile(gif, nullptr);
  GifFreeMapObject(colors);
}

void ReadGif(const std::string& fileName, Dib& pixels) {
  GifFileType* const gif = DGifOpenFileName(fileName.c_str(), nullptr);
  Require(gif != nullptr);
  GifRecordType record = UNDEFINED_RECORD_TYPE;
  while (record != IMAGE_DESC_RECORD_TYPE) Require(DGifGetRecordType(gif, &record) == GIF_OK);
  DGifGetImageDesc(gif);
  for (Long y = 0; y < pixels.Height(); ++y) {
    DGifGetLine(gif, pixels.WritableRow(y), pixels.Width());
  }
  DGifCloseFile(gif, nullptr);
}

}  // namespace quillet::bench::library
