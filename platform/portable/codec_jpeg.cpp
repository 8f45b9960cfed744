#include "platform/portable/codec_jpeg.h"

#include <csetjmp>
#include <cstdio>
// libjpeg's header needs the one above.
#include <jerror.h>
#include <jpeglib.h>

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <vector>

#include "base/rounding.h"
#include "platform/portable/bitmap_convert.h"
#include "platform/portable/codec_error.h"
#include "platform/portable/codec_format.h"

namespace quillet {
namespace {

// libjpeg leaves by a jump, which must not pass over objects with destructors: what calls the
// library is handed to Guard, which turns the jump into an exception, and holds nothing itself. An
// exception in a callback waits in `pending` until the jump is over.
struct ErrorState : jpeg_error_mgr {
  std::jmp_buf jump;
  std::exception_ptr pending;
  bool atEnd = false;

  ErrorState() {
    jpeg_std_error(this);
    error_exit = [](j_common_ptr info) {
      std::longjmp(static_cast<ErrorState*>(info->err)->jump, 1);
    };
    emit_message = [](j_common_ptr info, int level) {
      if (level >= 0) return;
      ErrorState& self = *static_cast<ErrorState*>(info->err);
      ++self.num_warnings;
      // Pixels are missing and there are no more bytes.
      if (self.atEnd && self.msg_code == JWRN_HIT_MARKER) std::longjmp(self.jump, 1);
    };
    output_message = [](j_common_ptr) {};
  }

  template <typename Action>
  void Guard(Action&& action) {
    if (setjmp(jump) != 0) Fail();
    action();
  }

 private:
  [[noreturn]] void Fail() {
    if (pending) std::rethrow_exception(pending);
    if (msg_code == JERR_OUT_OF_MEMORY || msg_code == JERR_NO_BACKING_STORE) throw std::bad_alloc();
    RefuseImage(msg_code == JWRN_HIT_MARKER ? "the file is cut short" : "not readable as JPEG");
  }
};

// The encoded file, block by block.
struct SourceState : jpeg_source_mgr {
  ByteReader reader;
  ErrorState& errors;

  SourceState(ByteSource& source, ErrorState& errorState)
      : jpeg_source_mgr{}, reader(source), errors(errorState) {
    init_source = term_source = [](j_decompress_ptr) {};
    resync_to_restart = jpeg_resync_to_restart;
    fill_input_buffer = [](j_decompress_ptr info) -> boolean {
      static_cast<SourceState*>(info->src)->Fill(info);
      return TRUE;
    };
    skip_input_data = [](j_decompress_ptr info, long count) {
      jpeg_source_mgr& self = *info->src;
      while (count > 0 && static_cast<std::size_t>(count) > self.bytes_in_buffer) {
        count -= static_cast<long>(self.bytes_in_buffer);
        self.fill_input_buffer(info);
        if (static_cast<SourceState&>(self).errors.atEnd) return;
      }
      if (count <= 0) return;
      self.next_input_byte += count;
      self.bytes_in_buffer -= static_cast<std::size_t>(count);
    };
  }

 private:
  void Fill(j_decompress_ptr info) {
    std::span<const Byte> block;
    try {
      block = reader.NextBlock();
    } catch (...) {
      errors.pending = std::current_exception();
    }
    if (errors.pending) info->err->error_exit(reinterpret_cast<j_common_ptr>(info));
    if (block.empty()) {
      // An end marker in place of one that is missing; pixels that are missing are told apart.
      static constexpr Byte kEnd[] = {0xFF, JPEG_EOI};
      errors.atEnd = true;
      block = kEnd;
    }
    next_input_byte = block.data();
    bytes_in_buffer = block.size();
  }
};

class Decompressor {
 public:
  explicit Decompressor(ByteSource& source)
      : m_encodedSize(source.Size()), m_source(source, m_errors) {
    m_info.err = &m_errors;
    m_errors.Guard([&] { jpeg_create_decompress(&m_info); });
    m_info.src = &m_source;
    m_progress.progress_monitor = [](j_common_ptr info) {
      // Each scan of a progressive file costs a pass over all coefficients; common ones have ten.
      constexpr std::uint64_t kMostScans = 500;
      constexpr std::uint64_t kMostPixelsRead = std::uint64_t{1} << 34;
      const auto& file = *reinterpret_cast<j_decompress_ptr>(info);
      const auto scans = static_cast<std::uint64_t>(file.input_scan_number);
      if (scans > kMostScans || scans * file.image_width * file.image_height > kMostPixelsRead) {
        info->err->msg_code = JERR_BAD_PROGRESSION;
        info->err->error_exit(info);
      }
    };
    m_info.progress = &m_progress;
  }
  Decompressor(const Decompressor&) = delete;
  Decompressor& operator=(const Decompressor&) = delete;
  ~Decompressor() { jpeg_destroy_decompress(&m_info); }

  Dib Read() {
    m_errors.Guard([&] { jpeg_read_header(&m_info, TRUE); });
    RequireImageSize(m_info.image_width, m_info.image_height);
    // A block of 8 x 8 pixels takes a bit at least, in up to 16 blocks' worth of subsampling;
    // arithmetic coding goes below a bit.
    constexpr std::uint64_t kPixelsPerByte = 8 * 64 * 16;
    RequireRatio(std::uint64_t{m_info.image_width} * m_info.image_height, m_encodedSize,
                 m_info.arith_code ? kPixelsPerByte * 64 : kPixelsPerByte);

    const bool gray = m_info.jpeg_color_space == JCS_GRAYSCALE;
    const bool fourInks =
        m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK;
    m_info.out_color_space = gray ? JCS_GRAYSCALE : fourInks ? JCS_CMYK : JCS_EXT_BGR;
    Dib dib(FormatOf(gray));
    std::vector<Byte> inks(fourInks ? std::size_t{m_info.image_width} * 4 : 0);

    m_errors.Guard([&] { jpeg_start_decompress(&m_info); });
    m_errors.Guard([&] {
      while (m_info.output_scanline < m_info.output_height) {
        Byte* const row = dib.WritableRow(static_cast<Long>(m_info.output_scanline));
        JSAMPROW target = fourInks ? inks.data() : row;
        jpeg_read_scanlines(&m_info, &target, 1);
        if (fourInks) InksToColors(inks.data(), row);
      }
    });
    return dib;
  }

 private:
  Dib::Format FormatOf(bool gray) const {
    Dib::Format format{.width = static_cast<Long>(m_info.image_width),
                       .height = static_cast<Long>(m_info.image_height),
                       .depth = gray ? 8 : 24};
    if (gray) format.palette = GrayPalette(8);
    constexpr int kPerInch = 1;
    constexpr int kPerCentimeter = 2;
    if (m_info.saw_JFIF_marker && m_info.density_unit == kPerInch) {
      format.xPelsPerMeter = DotsPerMeter(m_info.X_density);
      format.yPelsPerMeter = DotsPerMeter(m_info.Y_density);
    } else if (m_info.saw_JFIF_marker && m_info.density_unit == kPerCentimeter) {
      format.xPelsPerMeter = m_info.X_density * 100;
      format.yPelsPerMeter = m_info.Y_density * 100;
    }
    return format;
  }

  // Files with Adobe's marker hold the inks inverted: 255 for none.
  void InksToColors(const Byte* inks, Byte* row) const {
    const int invert = m_info.saw_Adobe_marker ? 0 : 255;
    for (JDIMENSION x = 0; x < m_info.image_width; ++x, inks += 4, row += 3) {
      const int light = inks[3] ^ invert;
      for (int i = 0; i < 3; ++i) row[i] = Over(inks[2 - i] ^ invert, light, 0);
    }
  }

  std::uint64_t m_encodedSize;
  ErrorState m_errors;
  SourceState m_source;
  jpeg_progress_mgr m_progress{};
  jpeg_decompress_struct m_info{};
};

struct TargetState : jpeg_destination_mgr {
  ReplacingFile& file;
  ErrorState& errors;
  std::array<Byte, std::size_t{64} << 10> buffer;

  TargetState(ReplacingFile& target, ErrorState& errorState)
      : jpeg_destination_mgr{}, file(target), errors(errorState) {
    init_destination = [](j_compress_ptr info) { static_cast<TargetState*>(info->dest)->Rewind(); };
    empty_output_buffer = [](j_compress_ptr info) -> boolean {
      TargetState& self = *static_cast<TargetState*>(info->dest);
      self.Write(info, self.buffer.size());
      return TRUE;
    };
    term_destination = [](j_compress_ptr info) {
      TargetState& self = *static_cast<TargetState*>(info->dest);
      self.Write(info, self.buffer.size() - self.free_in_buffer);
    };
  }

 private:
  void Rewind() {
    next_output_byte = buffer.data();
    free_in_buffer = buffer.size();
  }
  void Write(j_compress_ptr info, std::size_t size) {
    try {
      file.Write(std::span(buffer).first(size));
    } catch (...) {
      errors.pending = std::current_exception();
    }
    if (errors.pending) info->err->error_exit(reinterpret_cast<j_common_ptr>(info));
    Rewind();
  }
};

class Compressor {
 public:
  explicit Compressor(ReplacingFile& file) : m_target(file, m_errors) {
    m_info.err = &m_errors;
    m_errors.Guard([&] { jpeg_create_compress(&m_info); });
    m_info.dest = &m_target;
  }
  Compressor(const Compressor&) = delete;
  Compressor& operator=(const Compressor&) = delete;
  ~Compressor() { jpeg_destroy_compress(&m_info); }

  void Write(const Dib& dib, int quality) {
    const Dib::Format& format = dib.GetFormat();
    const bool gray = IsGrayPalette(format);
    m_info.image_width = static_cast<JDIMENSION>(format.width);
    m_info.image_height = static_cast<JDIMENSION>(format.height);
    m_info.input_components = gray ? 1 : 3;
    m_info.in_color_space = gray ? JCS_GRAYSCALE : JCS_EXT_BGR;
    m_errors.Guard([&] {
      jpeg_set_defaults(&m_info);
      jpeg_set_quality(&m_info, std::clamp(quality, 1, 100), TRUE);
    });
    SetResolution(format);

    const RowConverter converter(format);
    const bool asItIs = format.depth == 24 || (gray && format.depth == 8);
    std::vector<Byte> pixels(asItIs ? 0
                                    : static_cast<std::size_t>(format.width) * (gray ? 1u : 3u));
    const Byte step = static_cast<Byte>(255 / ((1 << std::min(format.depth, 8)) - 1));
    m_errors.Guard([&] {
      jpeg_start_compress(&m_info, TRUE);
      while (m_info.next_scanline < m_info.image_height) {
        const Byte* const row = dib.Row(static_cast<Long>(m_info.next_scanline));
        if (!asItIs && gray) {
          UnpackIndexes(row, format.width, format.depth, pixels.data());
          for (Byte& value : pixels) value = static_cast<Byte>(value * step);
        } else if (!asItIs) {
          converter.To24(row, 0, format.width, pixels.data());
        }
        // The library only reads it.
        JSAMPROW source = asItIs ? const_cast<Byte*>(row) : pixels.data();
        jpeg_write_scanlines(&m_info, &source, 1);
      }
      jpeg_finish_compress(&m_info);
    });
  }

 private:
  void SetResolution(const Dib::Format& format) {
    constexpr Long kMost = 65535;
    const Long x = format.xPelsPerMeter;
    const Long y = format.yPelsPerMeter;
    if (x <= 0 || y <= 0 || x > kMost * 39 || y > kMost * 39) return;
    const bool metric =
        x % 100 == 0 && y % 100 == 0 && (WholeDotsPerInch(x) == 0 || WholeDotsPerInch(y) == 0);
    m_info.density_unit = metric ? 2 : 1;
    m_info.X_density = Density(x, metric);
    m_info.Y_density = Density(y, metric);
  }
  static UINT16 Density(Long dotsPerMeter, bool metric) {
    const Long density = metric ? dotsPerMeter / 100 : ToLong(DotsPerInch(dotsPerMeter));
    return static_cast<UINT16>(std::clamp<Long>(density, 1, 65535));
  }

  ErrorState m_errors;
  TargetState m_target;
  jpeg_compress_struct m_info{};
};

}  // namespace

Dib ReadJpeg(ByteSource& source) {
  return Decompressor(source).Read();
}

void WriteJpeg(const Dib& dib, int quality, ReplacingFile& file) {
  Compressor(file).Write(dib, quality);
}

}  // namespace quillet
