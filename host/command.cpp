#include "host/command.h"

#include <exception>
#include <memory>
#include <ostream>

#include "host/command_line.h"
#include "host/exit_status.h"
#include "host/format.h"
#include "host/help.h"
#include "host/member_table.h"
#include "host/portable_window.h"
#include "host/runner.h"
#include "platform/portable/portable_platform.h"

namespace quillet {
namespace {

int RunSteps(const CommandLine& commandLine, std::ostream& out, std::ostream& err) {
  PortablePlatform platform;
  int status = Runner(platform.Contracts(),
                      std::make_unique<PortableWindow>(platform, commandLine.view.width,
                                                       commandLine.view.height),
                      commandLine, out, err)
                   .Run();
  if (commandLine.leaks) {
    const CensusCounts left = platform.Census();
    out << "leaks: " << FormatCensus(left) << '\n';
    if (left != CensusCounts{}) status = kFailed;
  }
  return status;
}

int Perform(const CommandLine& commandLine, std::ostream& out, std::ostream& err) {
  if (commandLine.help) {
    out << kHelp;
    return kSuccess;
  }
  if (!commandLine.errors.empty()) {
    for (const std::string& error : commandLine.errors) err << "quillet: " << error << '\n';
    err << "Try quillet --help." << std::endl;
    return kWrongUsage;
  }
  if (commandLine.version) {
    out << "quillet " QUILLET_VERSION "\n";
    return kSuccess;
  }
  if (commandLine.members) {
    out << MemberTable();
    return kSuccess;
  }
  return RunSteps(commandLine, out, err);
}

}  // namespace

int RunCommand(std::span<const std::string> arguments, std::istream& in, std::ostream& out,
               std::ostream& err) {
  try {
    const int status = Perform(ParseCommandLine(arguments, in), out, err);
    if (out.flush()) return status;
    err << "quillet: cannot write the output" << std::endl;
  } catch (const std::exception& error) {
    err << "quillet: " << error.what() << std::endl;
  }
  return kFailed;
}

}  // namespace quillet
