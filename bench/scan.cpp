#include "bench/scan.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

#include "bench/process.h"
#include "control/TWAIN.h"
#include "control/dispatch.h"
#include "embed/portable_window.h"
#include "platform/portable/byte_source.h"
#include "platform/portable/pixel_memory.h"
#include "platform/portable/portable_platform.h"

namespace quillet::bench {
namespace {

constexpr double kTimeGoal = 1.3;  // times the sum of the three
// The image in memory, a copy of its bytes, and the new picture, the one in the view besides.
constexpr double kPeakGoal = 3;

// Notes when the source says that its image is ready.
class ReadyWatch : public SourceManager {
 public:
  explicit ReadyWatch(SourceManager& manager) : m_manager(manager) {}

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override {
    const TW_UINT16 answer =
        m_manager.DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
    if (argumentType == DAT_EVENT) {
      TW_EVENT event;
      std::memcpy(&event, pData, sizeof event);
      if (event.TWMessage == MSG_XFERREADY) {
        ResetPeak();
        m_ready = ThreadTime();
      }
    }
    return answer;
  }
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override {
    return m_manager.AnsiText(text, maxBytes);
  }

  double Ready() const { return m_ready; }

 private:
  SourceManager& m_manager;
  double m_ready = 0;
};

// The three that a detour through a file cannot do without, on a block of that size.
class Detour {
 public:
  Detour(Files& files, std::size_t size) : m_files(files), m_bytes(size), m_copy(size) {
    std::memset(m_bytes.Data(), 1, size);
    std::memset(m_copy.Data(), 0, size);
  }

  // What a new file takes, whose removal does not count.
  double Seconds() {
    const std::string name = m_files.GetTempFileNameA(m_files.GetTempPathA(), "ptw");
    const std::span<const Byte> whole(m_bytes.Data(), m_bytes.Size());
    const double start = ThreadTime();
    std::memcpy(m_copy.Data(), whole.data(), whole.size());
    m_files.WriteFile(name, {&whole, 1});
    FileSource(name).Read(0, {m_copy.Data(), m_copy.Size()});
    const double taken = ThreadTime() - start;
    m_files.DeleteFile(name);
    return taken;
  }

 private:
  Files& m_files;
  PixelMemory m_bytes;
  PixelMemory m_copy;
};

}  // namespace

void MeasureScan(int dotsPerInch, int rounds, Results& results) {
  PortablePlatform platform;
  const Platform& all = platform.Contracts();
  ReadyWatch watch(all.sources);
  Platform contracts{all.bitmaps, all.pictures, all.memory,  all.messages, watch,
                     all.files,   all.codecs,   all.dialogs, all.forms,    all.system};
  PortableWindow window(platform, 800, 600);
  const auto control = TWAIN::Create(contracts, window.ControlsSurface(), nullptr);
  control->InitProperties();
  const auto scan = [&] {
    std::string title;
    control->Scan(title);
    window.Idle();
    return ThreadTime() - watch.Ready();
  };
  const auto empty = [&] {
    control->PutRefPicture(all.pictures.EmptyPicture());
    window.Idle();
  };
  control->PutResolution(50);
  scan();
  empty();
  control->PutResolution(static_cast<Integer>(dotsPerInch));
  const double base = Resident();
  scan();
  const double bytes = 3.0 * control->BitmapWidth() * control->BitmapHeight();
  const double peak = (StatusOf("VmHWM") - base) / bytes;

  Detour detour(all.files, static_cast<std::size_t>(bytes));
  double ours = std::numeric_limits<double>::infinity();
  double least = ours;
  for (int i = 0; i < rounds; ++i) {
    empty();
    least = std::min(least, detour.Seconds());
    ours = std::min(ours, scan());
  }
  const double ratio = ours / least;
  std::printf(
      "\nScan, %d dpi page in colour, from ready to shown: %.1f ms, %.2f times memcpy, file write "
      "and file read (goal %.2f); peak memory %.2f times the picture (goal %.2f)\n",
      dotsPerInch, 1000 * ours, ratio, kTimeGoal, peak, kPeakGoal);
  results.Count(ratio <= kTimeGoal, "time of a scan, " + std::to_string(dotsPerInch) + " dpi");
  results.Count(peak <= kPeakGoal, "peak memory of a scan");
}

}  // namespace quillet::bench
