#include "host/portable_window.h"
#include "platform/portable/portable_platform.h"
#include "tests/contracts/contract_platform.h"

namespace quillet {
namespace {

class PortableContractPlatform : public ContractPlatform {
 public:
  Platform& Contracts() override { return m_platform.Contracts(); }
  CensusCounts Census() const override { return m_platform.Census(); }
  PlatformTraits Traits() const override { return {}; }
  std::unique_ptr<ControlWindow> OpenWindow(int width, int height) override {
    return std::make_unique<PortableWindow>(m_platform, width, height);
  }

 private:
  PortablePlatform m_platform;
};

}  // namespace

std::unique_ptr<ContractPlatform> MakeContractPlatform() {
  return std::make_unique<PortableContractPlatform>();
}

}  // namespace quillet
