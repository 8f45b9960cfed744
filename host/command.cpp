#include "host/command.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <ostream>

#include "base/runtime_error.h"
#include "host/command_line.h"
#include "host/exit_status.h"
#include "host/format.h"
#include "host/help.h"
#include "host/member_table.h"
#include "host/portable_window.h"
#include "host/runner.h"
#include "host/source_faults.h"
#include "platform/portable/portable_platform.h"
#include "platform/portable/portable_source_manager.h"
#include "twain/trace.h"

namespace quillet {
namespace {

std::string ListOfSources() {
  std::size_t widest = 0;
  for (const SourceModel& model : SourceModels())
    widest = std::max(widest, std::string_view(model.name).size());
  std::string list;
  for (const SourceModel& model : SourceModels()) {
    std::string name = model.name;
    name.resize(widest + 2, ' ');
    list.append(name).append(model.description).append("\n");
  }
  return list;
}

// The machine as the command line describes it.
void SetUp(PortablePlatform& platform, const CommandLine& commandLine) {
  if (commandLine.noManager) platform.Sources().Uninstall();
  if (commandLine.source) platform.Sources().UseSource(*commandLine.source);
  if (!commandLine.page.empty()) platform.PutPageOnGlass(commandLine.page);
}

int RunSteps(const CommandLine& commandLine, std::ostream& out, std::ostream& err) {
  PortablePlatform platform(DefaultSourceFile::UserFolder());
  try {
    SetUp(platform, commandLine);
  } catch (const RunTimeError& error) {
    err << "quillet: --page " << commandLine.page << ": run-time error "
        << static_cast<int>(error.Number()) << ": " << error.what() << std::endl;
    return kWrongUsage;
  }
  FaultySourceManager faulty(platform.Sources(), commandLine.faults);
  TracingSourceManager tracing(faulty, platform.Contracts().memory,
                               [&](const std::string& line) { out << line << '\n'; });
  Platform contracts = platform.Contracts();
  Platform seen{contracts.bitmaps,
                contracts.pictures,
                contracts.memory,
                contracts.messages,
                commandLine.trace ? static_cast<SourceManager&>(tracing) : faulty,
                contracts.files};
  int status = Runner(seen,
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
  if (commandLine.listSources) {
    out << ListOfSources();
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
