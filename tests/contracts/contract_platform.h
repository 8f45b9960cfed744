#pragma once

#include <memory>

#include "host/control_window.h"
#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"

namespace quillet {

// A platform layer under the contract tests. Each implementation defines MakeContractPlatform in a
// file of its own; the tests use nothing but the contracts.
class ContractPlatform {
 public:
  virtual ~ContractPlatform() = default;

  virtual Platform& Contracts() = 0;
  virtual CensusCounts Census() const = 0;
  // A window with a surface of that inside size in pixels. Destroying it is how its host closes it.
  virtual std::unique_ptr<ControlWindow> OpenWindow(int width, int height) = 0;
};

std::unique_ptr<ContractPlatform> MakeContractPlatform();

}  // namespace quillet
