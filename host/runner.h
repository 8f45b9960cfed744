#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/session.h"

namespace quillet {

// Runs steps against a control in a window and reports what happens.
class Runner : private SessionEvents {
 public:
  Runner(Platform& platform, std::unique_ptr<HostedControl> control, const CommandLine& commandLine,
         std::ostream& out, std::ostream& err);

  // All steps in order, up to the first failure unless the run is to keep going. Whatever a step
  // does wrong is reported and never thrown. Returns the exit status.
  int Run();

 private:
  struct Handler {
    const EventStep* eventStep;
    // An event that the step itself causes does not run it again.
    bool running = false;
  };
  struct Perform;

  static std::vector<Handler> HandlersOf(const CommandLine& commandLine);

  void EventRaised(Event event, std::span<Variant> arguments) override;
  void PropertyChanged(std::string_view name) override;

  void Idle();
  // False when there is none, or the run has ended.
  bool RunNextStep();
  void RunStep(const Step& step);
  void Fail(const Step& step, const std::string& reason);
  void Call(const Member& member, std::vector<Variant>& arguments);
  void PrintChangedArguments(const Member& member, std::span<const Variant> before,
                             std::span<const Variant> after);

  const CommandLine& m_commandLine;
  std::ostream& m_out;
  std::ostream& m_err;
  std::vector<Handler> m_handlers;
  std::size_t m_nextStep = 0;
  bool m_failed = false;
  bool m_notSaved = false;
  Session m_session;  // last: it raises events from its first moment
};

}  // namespace quillet
