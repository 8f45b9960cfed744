#include "tests/windows/measurements.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "base/runtime_error.h"
#include "imagefile/cGDI.h"
#include "platform/win32/text.h"
#include "platform/win32/win32_platform.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/tiff_pages.h"
#include "tests/windows/wine.h"

namespace quillet {
namespace {

std::string VersionOfSystem() {
  // The documented call answers as the program's manifest lets it.
  using Version = LONG(WINAPI*)(OSVERSIONINFOW*);
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  const auto get = reinterpret_cast<Version>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  if (get) get(&version);
  return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) +
         "." + std::to_string(version.dwBuildNumber);
}

std::string ManagerThatIsThere() {
  for (const char* const name : {"TWAINDSM.DLL", "TWAIN_32.DLL"}) {
    const HMODULE library = ::LoadLibraryW(Utf16(name).c_str());
    if (!library) continue;
    wchar_t file[MAX_PATH] = L"";
    ::GetModuleFileNameW(library, file, MAX_PATH);
    ::FreeLibrary(library);
    return Utf8(file);
  }
  return "none: Scan raises run-time error 53";
}

class Measuring {
 public:
  std::string Report() {
    Codecs();
    Copies();
    Pages();
    return m_out.str();
  }

 private:
  std::uintmax_t SizeOfSaved(const PictureRef& picture, Long type, Byte quality) {
    cGDI gdi(m_contracts);
    gdi.PutBitmapPicture(picture);
    const Long status = gdi.SaveImage(m_file, type, quality, 0);
    if (status != 0) m_out << "  (status " << status << ")\n";
    return status == 0 ? std::filesystem::file_size(m_file) : 0;
  }
  std::string DifferenceOfLoaded(const PictureRef& picture) {
    const PictureRef loaded = cGDI(m_contracts).LoadImage(m_file);
    const PixelRows24 a = PixelsOf(m_contracts, loaded), b = PixelsOf(m_contracts, picture);
    if (a.bytes.size() != b.bytes.size()) return "not readable";
    double sum = 0;
    for (std::size_t i = 0; i < a.bytes.size(); ++i) sum += std::abs(a.bytes[i] - b.bytes[i]);
    return std::to_string(sum / static_cast<double>(a.bytes.size())) + " a channel off";
  }

  void Codecs() {
    const PictureRef soft = PictureOf(m_contracts, 640, 480, [](Long x, Long y) {
      return Pixel{static_cast<Byte>(x / 3), static_cast<Byte>(y / 2), static_cast<Byte>(x ^ y)};
    });
    for (const Byte quality : {Byte{255}, Byte{100}, Byte{75}, Byte{10}, Byte{0}}) {
      const std::uintmax_t size = SizeOfSaved(soft, twJPEG, quality);
      m_out << "  JPEG, quality " << int{quality} << ": " << size << " bytes, "
            << DifferenceOfLoaded(soft) << '\n';
    }
    const std::uintmax_t size = SizeOfSaved(soft, twGIF, 75);
    m_out << "  GIF of 24 bits: " << size << " bytes, " << DifferenceOfLoaded(soft) << '\n';
  }

  std::string RowOf(BitmapHandle bitmap) {
    std::string row;
    const PixelRows24 rows = PixelsOf(m_contracts, bitmap);
    for (Long x = 0; x < rows.width; ++x) (row += ' ') += std::to_string(rows.At(x, 0).green);
    return row;
  }
  void Copies() {
    BitmapServices& bitmaps = m_contracts.bitmaps;
    const UniqueBitmap edges = MakeBitmap(m_contracts, 8, 8, [](Long x, Long) {
      const auto gray = static_cast<Byte>(x < 3 ? 0 : x < 6 ? 240 : 120);
      return Pixel{gray, gray, gray};
    });
    m_out << "  edges:" << RowOf(edges.get()) << '\n';
    for (const Long size : {3, 4, 8, 16}) {
      const UniqueBitmap copy(bitmaps, bitmaps.CopyImage(edges.get(), size, size));
      BITMAP record;
      bitmaps.GetObjectA(copy.get(), record);
      m_out << "  stretched to " << size << ":" << RowOf(copy.get()) << " (" << record.bmBitsPixel
            << " bits" << (copy.get() == edges.get() ? ", its source" : "") << ")\n";
    }
  }

  void Pages() {
    const PictureRef picture = PictureOf(m_contracts, 5, 4, Gradient);
    SizeOfSaved(picture, twTIFF, 75);
    cGDI gdi(m_contracts);
    gdi.PutBitmapPicture(picture);
    for (int page = 2; page <= 3; ++page)
      m_out << "  adding page " << page << ": status " << gdi.SaveAddImage(m_file) << ", "
            << std::filesystem::file_size(m_file) << " bytes\n";
    m_out << "  saving over a missing folder: status ";
    gdi.PutBitmapPicture(picture);
    m_out << gdi.SaveImage(m_folder.Path("none/file"), twPNG, 75, 0)
          << "; adding to a missing file: status " << gdi.SaveAddImage(m_folder.Path("none"))
          << '\n';
  }

  Win32Platform m_platform;
  Platform& m_contracts = m_platform.Contracts();
  TemporaryFolder m_folder;
  const std::string m_file = m_folder.Path("file");
  std::ostringstream m_out;
};

}  // namespace

std::string DescribeSystem() {
  std::ostringstream out;
  const HDC screen = ::GetDC(nullptr);
  out << "system    " << (IsWine() ? "Wine as Windows " : "Windows ") << VersionOfSystem() << ", "
      << 8 * sizeof(void*) << "-bit program, code page " << ::GetACP() << '\n'
      << "display   " << ::GetSystemMetrics(SM_CXSCREEN) << "x" << ::GetSystemMetrics(SM_CYSCREEN)
      << ", " << ::GetDeviceCaps(screen, BITSPIXEL) << " bits, "
      << ::GetDeviceCaps(screen, LOGPIXELSX) << " dots per inch, scroll bars "
      << ::GetSystemMetrics(SM_CXVSCROLL) << " wide\n"
      << "manager   " << ManagerThatIsThere() << '\n';
  ::ReleaseDC(nullptr, screen);
  return out.str();
}

std::string Measurements() {
  return Measuring().Report();
}

}  // namespace quillet
