#pragma once

#include "embed/stage.h"
#include "platform/portable/portable_platform.h"

namespace quillet {

// The platform layer in memory, with simulated data sources.
class PortableStage : public Stage {
 public:
  explicit PortableStage(const Machine& machine = {});

  Platform& Contracts() override { return m_platform.Contracts(); }
  CensusCounts Census() const override { return m_platform.Census(); }
  std::unique_ptr<ControlWindow> OpenWindow(int width, int height) override;

  // For the one who plays the machine and the person in front of it.
  PortablePlatform& Layer() noexcept { return m_platform; }

 private:
  PortablePlatform m_platform;
};

}  // namespace quillet
