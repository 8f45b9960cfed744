#include "platform/portable/codec_png.h"

#include <png.h>

#include <csetjmp>
#include <cstring>
#include <exception>
#include <new>
#include <vector>

#include "platform/portable/bitmap_convert.h"
#include "platform/portable/channel_swap.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_format.h"

namespace quillet {
namespace {

// libpng leaves by a jump, which must not pass over objects with destructors: what calls the
// library is handed to Guard, which turns the jump into an exception, and holds nothing itself. An
// exception in a callback waits until the jump is over.
class PngErrors {
 public:
  static void Raise(png_structp png, png_const_charp) {
    std::longjmp(static_cast<PngErrors*>(png_get_error_ptr(png))->m_jump, 1);
  }
  static void Ignore(png_structp, png_const_charp) {}

  template <typename Action>
  void Guard(Action&& action) {
    if (setjmp(m_jump) != 0) {
      if (m_pending) std::rethrow_exception(m_pending);
      RefuseImage("not readable as PNG");
    }
    action();
  }
  // In a callback: runs what may throw.
  template <typename Action>
  void Call(png_structp png, Action&& action) {
    try {
      action();
    } catch (...) {
      m_pending = std::current_exception();
    }
    if (m_pending) png_error(png, "");
  }

 private:
  std::jmp_buf m_jump;
  std::exception_ptr m_pending;
};

class PngReader {
 public:
  explicit PngReader(ByteSource& source)
      : m_encodedSize(source.Size()),
        m_reader(source),
        m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &m_errors, PngErrors::Raise,
                                     PngErrors::Ignore)),
        m_info(m_png ? png_create_info_struct(m_png) : nullptr) {
    if (!m_info) {
      png_destroy_read_struct(&m_png, &m_info, nullptr);
      throw std::bad_alloc();
    }
    png_set_read_fn(m_png, this, [](png_structp png, png_bytep target, std::size_t size) {
      PngReader& self = *static_cast<PngReader*>(png_get_io_ptr(png));
      self.m_errors.Call(png, [&] {
        if (self.m_reader.Read({target, size}) != size) RefuseImage("the file is cut short");
      });
    });
    // Nothing but pixels and resolution is looked at: texts and profiles could take up memory, and
    // a gamma would change how the library mixes samples with the background.
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    constexpr Byte kResolution[] = "pHYs";
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_AS_DEFAULT, kResolution, 1);
    // Each block of the file has a checksum of its own.
    png_set_option(m_png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
    constexpr png_uint_32 kMostSize = png_uint_32{1} << 30;
    png_set_user_limits(m_png, kMostSize, kMostSize);
  }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;
  ~PngReader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

  Dib Read(PaletteColor background) {
    m_errors.Guard([&] { png_read_info(m_png, m_info); });
    const png_uint_32 width = png_get_image_width(m_png, m_info);
    const png_uint_32 height = png_get_image_height(m_png, m_info);
    RequireImageSize(width, height);
    // The most that the compression reaches is 1032 to 1.
    RequireRatio(std::uint64_t{png_get_rowbytes(m_png, m_info)} * height, m_encodedSize, 1032);

    Dib::Format format{.width = static_cast<Long>(width), .height = static_cast<Long>(height)};
    SetTransforms(format, background);
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    if (png_get_pHYs(m_png, m_info, &x, &y, &unit) != 0 && unit == PNG_RESOLUTION_METER &&
        x <= PNG_UINT_31_MAX && y <= PNG_UINT_31_MAX) {
      format.xPelsPerMeter = static_cast<Long>(x);
      format.yPelsPerMeter = static_cast<Long>(y);
    }
    int passes = 1;
    m_errors.Guard([&] {
      passes = png_set_interlace_handling(m_png);
      png_read_update_info(m_png, m_info);
    });
    Dib dib = passes > 1 ? Dib::Zeroed(format) : Dib(format);
    if (png_get_rowbytes(m_png, m_info) != dib.RowBytes()) RefuseImage("an unknown kind of pixel");
    m_errors.Guard([&] {
      for (int pass = 0; pass < passes; ++pass) {
        for (Long row = 0; row < dib.Height(); ++row) {
          png_read_row(m_png, dib.WritableRow(row), nullptr);
        }
      }
      png_read_end(m_png, nullptr);
    });
    ClearSpareBits(dib);
    return dib;
  }

 private:
  void SetTransforms(Dib::Format& format, PaletteColor background) {
    const int bits = png_get_bit_depth(m_png, m_info);
    const int color = png_get_color_type(m_png, m_info);
    const bool keyed = png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0;
    const bool clear = keyed || (color & PNG_COLOR_MASK_ALPHA) != 0;
    if (color == PNG_COLOR_TYPE_PALETTE) {
      format.depth = bits == 2 ? 8 : bits;
      format.palette = Colors(background);
      // Without it the library would make more of the palette than indexes.
      m_errors.Guard([&] {
        if (bits == 2) png_set_packing(m_png);
      });
    } else if (color == PNG_COLOR_TYPE_GRAY && (!clear || bits < 8)) {
      // Of 8 bits and fewer, the colour that stands for nothing is an index.
      format.depth = bits == 2 || bits == 16 ? 8 : bits;
      format.palette = GrayPalette(bits == 16 ? 8 : bits);
      if (clear) ReplaceKey(format, background);
      m_errors.Guard([&] {
        if (bits == 2) png_set_packing(m_png);
        if (bits == 16) png_set_scale_16(m_png);
      });
      if (bits == 2 && !clear) {
        format.palette = GrayPalette(8);
        m_errors.Guard([&] { png_set_expand_gray_1_2_4_to_8(m_png); });
      }
    } else {
      format.depth = 24;
      const int wide = bits == 16 ? 257 : 1;
      png_color_16 below{};
      below.red = static_cast<png_uint_16>(background.red * wide);
      below.green = static_cast<png_uint_16>(background.green * wide);
      below.blue = static_cast<png_uint_16>(background.blue * wide);
      m_errors.Guard([&] {
        if (keyed) png_set_tRNS_to_alpha(m_png);
        if ((color & PNG_COLOR_MASK_COLOR) == 0) png_set_gray_to_rgb(m_png);
        if (clear) png_set_background(m_png, &below, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1);
        if (bits == 16) png_set_scale_16(m_png);
        png_set_bgr(m_png);
      });
    }
  }

  std::vector<PaletteColor> Colors(PaletteColor background) {
    png_colorp colors = nullptr;
    int count = 0;
    png_bytep opacity = nullptr;
    int opacities = 0;
    m_errors.Guard([&] {
      png_get_PLTE(m_png, m_info, &colors, &count);
      png_get_tRNS(m_png, m_info, &opacity, &opacities, nullptr);
    });
    std::vector<PaletteColor> palette;
    for (int i = 0; i < count; ++i) {
      const int alpha = i < opacities ? opacity[i] : 255;
      palette.push_back({Over(colors[i].blue, alpha, background.blue),
                         Over(colors[i].green, alpha, background.green),
                         Over(colors[i].red, alpha, background.red)});
    }
    return palette;
  }

  void ReplaceKey(Dib::Format& format, PaletteColor background) {
    png_color_16p key = nullptr;
    m_errors.Guard([&] { png_get_tRNS(m_png, m_info, nullptr, nullptr, &key); });
    if (key && key->gray < format.palette.size()) format.palette[key->gray] = background;
  }

  // The file's own may hold anything.
  static void ClearSpareBits(Dib& dib) {
    const int used = static_cast<int>(std::int64_t{dib.Width()} * dib.Depth() % 8);
    if (used == 0) return;
    const Byte mask = static_cast<Byte>(0xFF00 >> used);
    for (Long y = 0; y < dib.Height(); ++y) dib.WritableRow(y)[dib.RowBytes() - 1] &= mask;
  }

  PngErrors m_errors;
  std::uint64_t m_encodedSize;
  ByteReader m_reader;
  png_structp m_png;
  png_infop m_info;
};

class PngWriter {
 public:
  explicit PngWriter(ReplacingFile& file)
      : m_file(file),
        m_png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &m_errors, PngErrors::Raise,
                                      PngErrors::Ignore)),
        m_info(m_png ? png_create_info_struct(m_png) : nullptr) {
    if (!m_info) {
      png_destroy_write_struct(&m_png, &m_info);
      throw std::bad_alloc();
    }
    png_set_write_fn(
        m_png, this,
        [](png_structp png, png_bytep bytes, std::size_t size) {
          PngWriter& self = *static_cast<PngWriter*>(png_get_io_ptr(png));
          self.m_errors.Call(png, [&] { self.m_file.Write({bytes, size}); });
        },
        nullptr);
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter() { png_destroy_write_struct(&m_png, &m_info); }

  void Write(const Dib& dib) {
    const Dib::Format& format = dib.GetFormat();
    const bool indexed = format.depth <= 8;
    const bool gray = IsGrayPalette(format);
    std::vector<png_color> palette;
    if (indexed && !gray) {
      for (const PaletteColor& color : WholePalette(format)) {
        palette.push_back({color.red, color.green, color.blue});
      }
    }
    m_errors.Guard([&] {
      // The library's own bound is a million pixels a side.
      png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
      png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(format.width),
                   static_cast<png_uint_32>(format.height), indexed ? format.depth : 8,
                   !indexed ? PNG_COLOR_TYPE_RGB
                   : gray   ? PNG_COLOR_TYPE_GRAY
                            : PNG_COLOR_TYPE_PALETTE,
                   PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
      if (!palette.empty()) {
        png_set_PLTE(m_png, m_info, palette.data(), static_cast<int>(palette.size()));
      }
      if (format.xPelsPerMeter > 0 && format.yPelsPerMeter > 0) {
        png_set_pHYs(m_png, m_info, static_cast<png_uint_32>(format.xPelsPerMeter),
                     static_cast<png_uint_32>(format.yPelsPerMeter), PNG_RESOLUTION_METER);
      }
      // Level 1 with one filter: on scanned pages little larger than the slowest, in a fraction of
      // the time.
      png_set_compression_level(m_png, 1);
      png_set_compression_buffer_size(m_png, std::size_t{64} << 10);
      png_set_filter(m_png, 0,
                     format.depth < 8 || !palette.empty() ? PNG_FILTER_NONE : PNG_FILTER_SUB);
      png_write_info(m_png, m_info);
    });
    const RowConverter converter(format);
    const std::size_t width = static_cast<std::size_t>(format.width);
    std::vector<Byte> colors(indexed || format.depth == 24 ? 0 : width * 3);
    std::vector<Byte> swapped(indexed ? 0 : width * 3);
    m_errors.Guard([&] {
      for (Long y = 0; y < format.height; ++y) {
        const Byte* row = dib.Row(y);
        if (!colors.empty()) {
          converter.To24(row, 0, format.width, colors.data());
          row = colors.data();
        }
        if (!indexed) {
          SwapRedAndBlue(row, swapped.data(), width);
          row = swapped.data();
        }
        png_write_row(m_png, row);
      }
      png_write_end(m_png, m_info);
    });
  }

 private:
  PngErrors m_errors;
  ReplacingFile& m_file;
  png_structp m_png;
  png_infop m_info;
};

}  // namespace

Dib ReadPng(ByteSource& source, PaletteColor background) {
  return PngReader(source).Read(background);
}

void WritePng(const Dib& dib, ReplacingFile& file) {
  PngWriter(file).Write(dib);
}

}  // namespace quillet
