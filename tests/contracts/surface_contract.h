#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "embed/stage.h"
#include "tests/support/recording_surface_events.h"
#include "tests/support/surface_layout.h"

namespace quillet {

using Log = std::vector<std::string>;

// A control of 400 x 300 pixels inside; both bars range over 0 to 1000 in steps of 10 and 100.
class SurfaceContract : public testing::Test {
 protected:
  SurfaceContract() {
    LayOut(*surface, true, true);
    for (ScrollBar* bar : {&horizontal, &vertical}) {
      bar->PutMax(1000);
      bar->PutSmallChange(10);
      bar->PutLargeChange(100);
    }
    window->Idle();
    surface->Connect(&events);
  }

  std::unique_ptr<Stage> platform = MakeStage();
  std::unique_ptr<ControlWindow> window = platform->OpenWindow(400, 300);
  std::shared_ptr<Surface> surface = window->ControlsSurface();
  ControlSurface& control = surface->UserControl();
  PictureBox& box = surface->picTwain();
  ScrollBar& horizontal = surface->HScroll1();
  ScrollBar& vertical = surface->VScroll1();
  RecordingSurfaceEvents events;
};

}  // namespace quillet
