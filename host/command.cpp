#include "host/command.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <ostream>
#include <stdexcept>

#include "base/runtime_error.h"
#include "embed/stage.h"
#include "host/command_line.h"
#include "host/control_file.h"
#include "host/exit_status.h"
#include "host/format.h"
#include "host/help.h"
#include "host/member_table.h"
#include "host/runner.h"
#include "host/source_faults.h"
#include "twain/trace.h"

namespace quillet {
namespace {

std::string ListOfSources() {
  const std::vector<KnownSource> sources = KnownSources();
  std::size_t widest = 0;
  for (const KnownSource& source : sources) widest = std::max(widest, source.name.size());
  std::string list;
  for (const KnownSource& source : sources) {
    std::string name = source.name;
    name.resize(widest + 2, ' ');
    list.append(name).append(source.description).append("\n");
  }
  return list;
}

std::unique_ptr<Stage> StageOf(const CommandLine& commandLine) {
  return MakeStage({.remembersChoices = true,
                    .noManager = commandLine.noManager,
                    .source = commandLine.source,
                    .page = commandLine.page});
}

// The machine without a browser: what would be opened is printed.
class PrintingShell : public SystemServices {
 public:
  PrintingShell(SystemServices& system, std::ostream& out) : m_system(system), m_out(out) {}

  int CurrentYear() const override { return m_system.CurrentYear(); }
  std::string ModuleName() const override { return m_system.ModuleName(); }
  bool ShellExecuteA(WindowHandle, const std::string& file) override {
    m_out << "opens " << file << '\n';
    return true;
  }

 private:
  SystemServices& m_system;
  std::ostream& m_out;
};

// What the command line asks for cannot be had.
int Refuse(const std::string& what, const std::string& why, std::ostream& err) {
  err << "quillet: " << (what.empty() ? "" : what + ": ") << why << std::endl;
  return kWrongUsage;
}

std::string ControlOption(const CommandLine& commandLine) {
  return commandLine.registered ? "--registered" : "--ocx " + commandLine.ocx;
}

std::unique_ptr<ControlFile> ControlFileOf(const CommandLine& commandLine) {
  const bool isWanted = commandLine.registered || !commandLine.ocx.empty();
  return isWanted ? LoadControlFile(commandLine.ocx) : nullptr;
}

int RunSteps(const CommandLine& commandLine, std::ostream& out, std::ostream& err) {
  std::unique_ptr<Stage> stage;
  try {
    stage = StageOf(commandLine);
  } catch (const RunTimeError& error) {
    return Refuse(commandLine.page.empty() ? "" : "--page " + commandLine.page, FormatError(error),
                  err);
  }
  std::unique_ptr<ControlFile> file;
  try {
    file = ControlFileOf(commandLine);
  } catch (const RunTimeError& error) {
    return Refuse(ControlOption(commandLine), FormatError(error), err);
  } catch (const std::runtime_error& error) {
    return Refuse(ControlOption(commandLine), error.what(), err);
  }
  const Platform& contracts = stage->Contracts();
  FaultySourceManager faulty(contracts.sources, commandLine.faults);
  TracingSourceManager tracing(faulty, contracts.memory,
                               [&](const std::string& line) { out << line << '\n'; });
  PrintingShell system(contracts.system, out);
  Platform seen{contracts.bitmaps,
                contracts.pictures,
                contracts.memory,
                contracts.messages,
                commandLine.trace ? static_cast<SourceManager&>(tracing) : faulty,
                contracts.files,
                contracts.codecs,
                contracts.dialogs,
                contracts.forms,
                system};
  const auto [width, height] = commandLine.view;
  std::unique_ptr<HostedControl> control;
  if (file)
    control = file->Open(seen, width, height);
  else
    control = std::make_unique<CoreHostedControl>(seen, stage->OpenWindow(width, height));
  int status = Runner(seen, std::move(control), commandLine, out, err).Run();
  if (commandLine.leaks) {
    const CensusCounts left = stage->Census();
    const bool isAtRest = !file || file->IsAtRest();
    out << "leaks: " << FormatCensus(left) << (isAtRest ? "" : "; the control's file is in use")
        << '\n';
    if (left != CensusCounts{} || !isAtRest) status = kFailed;
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
