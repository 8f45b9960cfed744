#include "bench/image_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

#include "bench/library_codecs.h"
#include "bench/page.h"
#include "bench/peer.h"
#include "bench/process.h"
#include "imagefile/cGDI.h"
#include "platform/portable/codec_tiff.h"
#include "platform/portable/portable_platform.h"

namespace quillet::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kLibraryGoal = 1.15;
constexpr double kPeerGoal = 1;
constexpr double kAppendGoal = 3;
constexpr int kPages = 100;
constexpr int kPageResolution = 75;

// A folder of its own that goes with it.
class Folder {
 public:
  Folder() : m_path(fs::temp_directory_path() / ("quillet_bench" + std::to_string(WallTime()))) {
    fs::create_directory(m_path);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
  }
  std::string File(const std::string& name) const { return (m_path / name).string(); }

 private:
  fs::path m_path;
};

using Action = std::function<void()>;

// The smallest of many times.
struct Best {
  explicit Best(double (*timeOf)() = ThreadTime) : now(timeOf) {}

  void Time(const Action& action) {
    if (!action) return;
    const double start = now();
    action();
    seconds = std::min(seconds, now() - start);
  }
  std::optional<double> RatioOf(const Best& ours) const {
    if (seconds == std::numeric_limits<double>::infinity()) return std::nullopt;
    return ours.seconds / seconds;
  }

  double (*now)();
  double seconds = std::numeric_limits<double>::infinity();
};

struct FormatCase {
  const char* name;
  IMAGE_TYPE type;
  const char* ending;  // by which the peer knows the format; null where it has none
  void (*write)(const Dib&, const std::string&);
  void (*read)(const std::string&, Dib&);
  bool indexed;
};

constexpr FormatCase kFormats[] = {
    {"BMP", twBITMAP, ".bmp", nullptr, nullptr, false},
    {"JPEG", twJPEG, ".jpg", library::WriteJpeg, library::ReadJpeg, false},
    {"PNG", twPNG, ".png", library::WritePng, library::ReadPng, false},
    {"TIFF", twTIFF, ".tif", library::WriteTiff, library::ReadTiff, false},
    {"GIF, 256 colours", twGIF, nullptr, library::WriteGif, library::ReadGif, true},
    {"GIF, of 24 bits", twGIF, nullptr, nullptr, nullptr, false},
};

std::string Text(std::optional<double> value) {
  if (!value) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", *value);
  return text;
}

class Measurement {
 public:
  Measurement(int dotsPerInch, int rounds, Results& results)
      : m_page(dotsPerInch, BestKernels().set),
        m_rounds(rounds),
        m_results(results),
        m_gdi(m_page.Contracts()) {}

  void Run() {
    std::printf("\nImage files, %d dpi page\n  %-17s %-6s %8s   %9s %5s   %6s %5s   %s\n",
                m_page.DotsPerInch(), "format", "", "ms", "x library", "goal", "x peer", "goal",
                "met");
    for (const FormatCase& format : kFormats) MeasureFormat(format);
    std::printf(
        "\nMemory while loading, MB (goal: pixels, file and 2 more)\n  %-17s %6s %6s %6s   met\n",
        "format", "pixels", "file", "peak");
    for (const FormatCase& format : kFormats) {
      if (!format.indexed) MeasureLoadMemory(format);
    }
    MeasureAppend();
  }

 private:
  void Save(const PictureRef& picture, const std::string& file, IMAGE_TYPE type) {
    m_gdi.PutBitmapPicture(picture);
    if (m_gdi.SaveImage(file, type, 75, 0) != 0) throw std::runtime_error("not saved: " + file);
  }
  PictureRef Load(const std::string& file) {
    PictureRef picture = m_gdi.LoadImage(file);
    if (!picture) throw std::runtime_error("not loaded: " + file);
    return picture;
  }

  void MeasureFormat(const FormatCase& format) {
    const std::string ours = m_folder.File("ours"), theirs = m_folder.File("library");
    const std::string peers =
        m_folder.File(std::string("peer") + (format.ending ? format.ending : ""));
    PictureRef picture = m_page.AsPicture();
    if (format.indexed) {
      Save(picture, ours, format.type);
      picture = Load(ours);
    }
    const Dib pixels = PixelsOf(picture, format.indexed);
    Action peerWrite, peerRead;
    if (format.ending) {
      peerWrite = peer::WriteImage(m_page, peers);
      peerRead = peer::ReadImage(peers);
    }

    Best write, read, libraryWrite, libraryRead, peerWriting, peerReading;
    for (int i = 0; i < m_rounds; ++i) {
      // New files all: an old one's end has a price too.
      for (const std::string& file : {ours, theirs, peers}) fs::remove(file);
      write.Time([&] { Save(picture, ours, format.type); });
      if (format.write) libraryWrite.Time([&] { format.write(pixels, theirs); });
      peerWriting.Time(peerWrite);
      // Everybody reads our file, but the peer's decoders expect an ending.
      PictureRef loaded;
      read.Time([&] { loaded = Load(ours); });
      loaded.reset();
      if (format.read) {
        libraryRead.Time([&] {
          Dib fresh(pixels.GetFormat());
          format.read(ours, fresh);
        });
      }
      if (peerRead) fs::copy_file(ours, peers, fs::copy_options::overwrite_existing);
      peerReading.Time(peerRead);
    }
    Print(format, "save", write, libraryWrite, peerWriting);
    Print(format, "load", read, libraryRead, peerReading);
  }

  void Print(const FormatCase& format, const char* what, const Best& ours, const Best& theirs,
             const Best& peers) {
    const std::optional<double> ofLibrary = theirs.RatioOf(ours), ofPeer = peers.RatioOf(ours);
    bool met = true;
    const auto judge = [&](std::optional<double> ratio, double goal, const char* whose) {
      if (!ratio) return std::string("-");
      met = met && *ratio <= goal;
      m_results.Count(*ratio <= goal, std::string(what) + " " + format.name + ": " + Text(ratio) +
                                          whose + ", goal " + Text(goal));
      return Text(goal);
    };
    const std::string libraryGoal = judge(ofLibrary, kLibraryGoal, " x library");
    const std::string peerGoal = judge(ofPeer, kPeerGoal, " x peer");
    std::printf("  %-17s %-6s %8.2f   %9s %5s   %6s %5s   %s\n", format.name, what,
                1000 * ours.seconds, Text(ofLibrary).c_str(), libraryGoal.c_str(),
                Text(ofPeer).c_str(), peerGoal.c_str(),
                !ofLibrary && !ofPeer ? "-"
                : met                 ? "yes"
                                      : "NO");
    std::fflush(stdout);
  }

  // On a platform that has not held a page before, so that no memory is left to it.
  void MeasureLoadMemory(const FormatCase& format) {
    constexpr double kMegabyte = 1 << 20;
    constexpr double kOwnRows = 2 * kMegabyte;
    const std::string file = m_folder.File("ours"), small = m_folder.File("small");
    for (const std::string& name : {file, small}) fs::remove(name);
    Save(m_page.AsPicture(), file, format.type);
    Save(PictureOfPage(m_page.Contracts(), 50), small, format.type);
    PortablePlatform platform;
    cGDI gdi(platform.Contracts());
    gdi.LoadImage(small);
    const double before = Resident();
    if (!ResetPeak() || before == 0) {
      std::printf("  cannot be measured here\n");
      return;
    }
    const PictureRef loaded = gdi.LoadImage(file);
    const double peak = StatusOf("VmHWM") - before;
    const double channels = format.type == twGIF ? 1 : 3;
    const double pixels = channels * m_page.Width() * m_page.Height();
    const double encoded = static_cast<double>(fs::file_size(file));
    const bool met = peak <= pixels + encoded + kOwnRows;
    std::printf("  %-17s %6.1f %6.1f %6.1f   %s\n", format.name, pixels / kMegabyte,
                encoded / kMegabyte, peak / kMegabyte, met ? "yes" : "NO");
    m_results.Count(met, std::string("memory while loading ") + format.name);
  }

  // A hundred pages by the library, then one more by the control.
  void MeasureAppend() {
    const std::string file = m_folder.File("pages.tif"), copy = m_folder.File("copy.tif");
    const PictureRef page = PictureOfPage(m_page.Contracts(), kPageResolution);
    const Dib pixels = PixelsOf(page, false);
    {
      ReplacingFile target(file);
      {
        const UniqueTiff tiff = OpenTiff(target.Descriptor(), "w");
        for (int i = 0; i < kPages; ++i) WriteTiffPage(tiff.get(), pixels);
      }
      target.Commit();
    }
    fs::copy_file(file, copy);
    const auto size = static_cast<double>(fs::file_size(file));
    Best append(WallTime), replace(WallTime), appendCpu, replaceCpu;
    const int rounds = std::max(m_rounds / 3, 3);
    for (int i = 0; i < rounds; ++i) {
      fs::copy_file(copy, file, fs::copy_options::overwrite_existing);
      m_gdi.PutBitmapPicture(page);
      const auto add = [&] {
        if (m_gdi.SaveAddImage(file) != 0) throw std::runtime_error("no page added");
      };
      const auto copyOver = [&] { m_page.Contracts().files.CopyFile(copy, file); };
      append.Time([&] { appendCpu.Time(add); });
      replace.Time([&] { replaceCpu.Time(copyOver); });
    }
    const double ratio = append.seconds / replace.seconds;
    std::printf(
        "\nAdding a page to a TIFF file of %d (%.1f MB): %.0f ms on the clock, %.0f of the "
        "processor; "
        "copying the file over another: %.0f and %.0f; %.2f times on the clock (goal %.2f)\n",
        kPages, size / 1e6, 1000 * append.seconds, 1000 * appendCpu.seconds, 1000 * replace.seconds,
        1000 * replaceCpu.seconds, ratio, kAppendGoal);
    m_results.Count(ratio <= kAppendGoal, "adding a page to a TIFF file");
  }

  // The picture's pixels; 8-bit ones come by way of a file that keeps them.
  Dib PixelsOf(const PictureRef& picture, bool indexed) {
    const std::string file = m_folder.File("pixels.tif");
    fs::remove(file);
    Save(picture, file, twTIFF);
    FileSource source(file);
    Dib pixels = quillet::ReadTiff(source, {});
    if (pixels.Depth() != (indexed ? 8 : 24)) throw std::runtime_error("pixels of another kind");
    return pixels;
  }

  Page m_page;
  int m_rounds;
  Results& m_results;
  cGDI m_gdi;
  Folder m_folder;
};

}  // namespace

void MeasureImageFiles(int dotsPerInch, int rounds, Results& results) {
  Measurement(dotsPerInch, rounds, results).Run();
}

}  // namespace quillet::bench
