#include "platform/win32/sdk.h"
#include "platform/win32/win32_platform.h"
#include "tests/contracts/contract_platform.h"

namespace quillet {
namespace {

class Win32ContractPlatform : public ContractPlatform {
 public:
  Platform& Contracts() override { return m_platform.Contracts(); }
  CensusCounts Census() const override { return m_platform.Census(); }
  PlatformTraits Traits() const override {
    const HDC screen = ::GetDC(nullptr);
    const int depth = ::GetDeviceCaps(screen, BITSPIXEL);
    ::ReleaseDC(nullptr, screen);
    return {.depthOfCopies = depth, .copyMayBeItsSource = true};
  }
  // The tests that open windows are not built here yet.
  std::unique_ptr<ControlWindow> OpenWindow(int, int) override { return nullptr; }

 private:
  Win32Platform m_platform;
};

}  // namespace

std::unique_ptr<ContractPlatform> MakeContractPlatform() {
  return std::make_unique<Win32ContractPlatform>();
}

}  // namespace quillet
