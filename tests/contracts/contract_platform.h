#pragma once

#include <memory>

#include "host/control_window.h"
#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"

namespace quillet {

// What the platforms may differ in; everything else is the same. The filter of stretched copies is
// each platform's own too, and so is which image of an icon file it takes.
struct PlatformTraits {
  // The depth of every copy, the screen's (one bit may stay one bit); 0 where a copy has its
  // source's, a stretched one 24.
  int depthOfCopies = 0;
  // CopyImage may hand back its source where that is what was asked for.
  bool copyMayBeItsSource = false;
};

// A platform layer under the contract tests. Each implementation defines MakeContractPlatform in a
// file of its own; the tests use nothing but the contracts.
class ContractPlatform {
 public:
  virtual ~ContractPlatform() = default;

  virtual Platform& Contracts() = 0;
  virtual CensusCounts Census() const = 0;
  virtual PlatformTraits Traits() const = 0;
  // A window with a surface of that inside size in pixels. Destroying it is how its host closes it.
  virtual std::unique_ptr<ControlWindow> OpenWindow(int width, int height) = 0;
};

std::unique_ptr<ContractPlatform> MakeContractPlatform();

}  // namespace quillet
