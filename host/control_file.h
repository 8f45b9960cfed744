#pragma once

#include <memory>
#include <string>

#include "host/hosted_control.h"

namespace quillet {

// A control as hosts use it, out of its file: made by its class, called by the names of its
// members, heard by sinks. What was made of it is let go of before it.
class ControlFile {
 public:
  virtual ~ControlFile() = default;

  // A control in a container's window of that inside size in pixels. Its pictures are the
  // platform's. std::runtime_error when the file's class makes none, run-time error 380 for a size
  // that no window has.
  virtual std::unique_ptr<HostedControl> Open(Platform& platform, int width, int height) = 0;

  // Whether nothing of the file is in use: neither a control nor what a control gave out.
  virtual bool IsAtRest() const = 0;
};

// Loads the file of that name, which needs no registration; without a name the one that is
// registered. std::runtime_error when there is none, or it holds no such class; run-time error 445
// where the system has no such files.
std::unique_ptr<ControlFile> LoadControlFile(const std::string& fileName);

}  // namespace quillet
