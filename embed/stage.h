#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embed/control_window.h"
#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"

namespace quillet {

// The platform that a host stands on, with windows for controls. What was made on it is let go of
// before it. A program needs one; the pictures of one mean nothing to controls on another.
class Stage {
 public:
  virtual ~Stage() = default;

  virtual Platform& Contracts() = 0;
  virtual CensusCounts Census() const = 0;
  // A window with a surface of that inside size in pixels. Destroying it is how its host closes it.
  virtual std::unique_ptr<ControlWindow> OpenWindow(int width, int height) = 0;
};

// A data source that is known before the machine is asked.
struct KnownSource {
  std::string name;
  std::string description;
};

// The simulated data sources; none where scanners are real.
std::vector<KnownSource> KnownSources();

// The machine that a stage is to be, as far as it can be chosen.
struct Machine {
  // The user's choice of a data source lasts from run to run.
  bool remembersChoices = false;
  // Without a data source manager.
  bool noManager = false;
  // The only known source, and the picture file that lies on its glass; the defaults when empty.
  std::string source;
  std::string page;
};

// The stage of the platform this is built for. Run-time errors: as of PictureServices::LoadPicture
// for the page, 445 for a machine that cannot be had.
std::unique_ptr<Stage> MakeStage(const Machine& machine = {});

}  // namespace quillet
