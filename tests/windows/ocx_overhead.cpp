// What a call through quillet.ocx costs more than the same call of the core, both on one page in
// one run. On Windows:
//   ocx_overhead.exe PAGE.bmp
// Prints the best time of each way in milliseconds, and their ratio.

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>

#include "control/TWAIN.h"
#include "control/dispatch.h"
#include "platform/win32/text.h"
#include "platform/win32/win32_platform.h"
#include "tests/server/container.h"
#include "tests/server/control_library.h"

namespace quillet {
namespace {

constexpr int kWidth = 804, kHeight = 604;

double Milliseconds(const std::function<void()>& work) {
  LARGE_INTEGER frequency, start, end;
  ::QueryPerformanceFrequency(&frequency);
  ::QueryPerformanceCounter(&start);
  work();
  ::QueryPerformanceCounter(&end);
  return 1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) /
         static_cast<double>(frequency.QuadPart);
}

// The vertical bar of a control, moved to and fro as a drag of its thumb moves it.
void ScrollStep(HWND box, int position) {
  const HWND control = ::GetParent(box);
  for (HWND bar = ::GetWindow(control, GW_CHILD); bar; bar = ::GetWindow(bar, GW_HWNDNEXT)) {
    if (bar == box || !(::GetWindowLongPtrW(bar, GWL_STYLE) & SBS_VERT)) continue;
    const auto sender = reinterpret_cast<LPARAM>(bar);
    ::SendMessageW(control, WM_VSCROLL, static_cast<WPARAM>(MAKELONG(SB_THUMBTRACK, position)),
                   sender);
    ::SendMessageW(control, WM_VSCROLL, SB_ENDSCROLL, sender);
  }
}

void Compare(const char* name, int rounds, const std::function<void(int)>& core,
             const std::function<void(int)>& server) {
  double bestCore = std::numeric_limits<double>::max();
  double bestServer = bestCore;
  for (int round = 0; round < rounds; ++round) {
    bestCore = std::min(bestCore, Milliseconds([&] { core(round); }));
    bestServer = std::min(bestServer, Milliseconds([&] { server(round); }));
  }
  std::printf("%-12s core %8.3f ms   quillet.ocx %8.3f ms   ratio %.3f\n", name, bestCore,
              bestServer, bestServer / bestCore);
}

void Run(const std::string& page) {
  const ControlLibrary library;
  Win32Platform platform;
  const auto surface = platform.CreateSurface(kWidth - 4, kHeight - 4);
  Container coreWindow(kWidth, kHeight), serverWindow(kWidth, kHeight);
  surface->Site(coreWindow.Window(), coreWindow.place);
  const auto core = TWAIN::Create(platform.Contracts(), surface, nullptr);
  core->InitProperties();
  const auto server = library.Make();
  serverWindow.Show(*As<IOleObject>(server).get());

  const auto picture = [&] { return platform.Contracts().pictures.LoadPicture(page); };
  core->PutRefPicture(picture());
  server->putref_Picture(Win32Pictures::ObjectOf(picture()).get());
  const auto method = [&](const char* name, int rounds) {
    const Long number = NumberOf(name);
    const std::wstring wide = Utf16(name);
    Compare(
        name, rounds, [&](int) { Invoke(*core, number, Access::Method, {}); },
        [&](int) { Call(server.get(), wide.c_str()); });
  };
  method("Flip", 15);
  method("GrayScale", 15);
  method("Blur", 15);
  LONG box = 0;
  server->get_hwnd(&box);
  const HWND serverBox = static_cast<HWND>(LongToHandle(box));
  const HWND coreBox = surface->picTwain().Window();
  const auto position = [](int round) { return 100 + 10 * (round % 2); };
  Compare(
      "scroll step", 60, [&](int round) { ScrollStep(coreBox, position(round)); },
      [&](int round) { ScrollStep(serverBox, position(round)); });
  As<IOleObject>(server)->SetClientSite(nullptr);
}

}  // namespace
}  // namespace quillet

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    std::puts("usage: ocx_overhead PAGE.bmp");
    return 2;
  }
  quillet::Run(quillet::Utf8(argv[1]));
  return 0;
}
