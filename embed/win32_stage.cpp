#include "base/runtime_error.h"
#include "embed/stage.h"
#include "embed/win32_window.h"
#include "platform/win32/win32_platform.h"

namespace quillet {
namespace {

class Win32Stage : public Stage {
 public:
  Platform& Contracts() override { return m_platform.Contracts(); }
  CensusCounts Census() const override { return m_platform.Census(); }
  std::unique_ptr<ControlWindow> OpenWindow(int width, int height) override {
    return std::make_unique<Win32Window>(m_platform, width, height);
  }

 private:
  Win32Platform m_platform;
};

}  // namespace

std::vector<KnownSource> KnownSources() {
  return {};
}

std::unique_ptr<Stage> MakeStage(const Machine& machine) {
  if (machine.noManager || !machine.source.empty() || !machine.page.empty())
    throw RunTimeError(ErrorNumber::ActionNotSupported, "scanners are real on this platform");
  return std::make_unique<Win32Stage>();
}

}  // namespace quillet
