#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "control/events.h"
#include "host/source_faults.h"
#include "host/step.h"

namespace quillet {

// A step that runs inside an event.
struct EventStep {
  Event event;
  Step step;
};

// What the command was asked to do.
struct CommandLine {
  Size view{800, 600};
  bool events = false;
  bool byRef = false;
  bool keepGoing = false;
  bool leaks = false;
  bool members = false;
  bool trace = false;
  bool noManager = false;
  bool listSources = false;
  bool registered = false;
  bool version = false;
  bool help = false;
  std::string source;  // empty: the user's default
  std::string page;    // empty: the built-in one
  std::string ocx;     // the file whose control is hosted; empty: none, the core is called directly
  std::vector<SourceFault> faults;
  std::vector<EventStep> eventSteps;
  std::vector<Step> steps;

  // Everything that cannot be meant, a line each; when there is any, nothing is to be run.
  std::vector<std::string> errors;
};

// Options may stand anywhere among the steps; the steps that --steps reads run in the place where
// the option stands. `in` is what `--steps -` reads.
CommandLine ParseCommandLine(std::span<const std::string> arguments, std::istream& in);

}  // namespace quillet
