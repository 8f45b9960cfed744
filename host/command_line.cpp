#include "host/command_line.h"

#include <cerrno>
#include <fstream>
#include <istream>
#include <set>
#include <system_error>

#include "host/source_name.h"
#include "host/text.h"
#include "host/usage_error.h"

namespace quillet {
namespace {

constexpr struct {
  const char* name;
  bool CommandLine::*value;
} kFlags[] = {
    {"--events", &CommandLine::events},
    {"--byref", &CommandLine::byRef},
    {"--keep-going", &CommandLine::keepGoing},
    {"--leaks", &CommandLine::leaks},
    {"--members", &CommandLine::members},
    {"--trace", &CommandLine::trace},
    {"--no-manager", &CommandLine::noManager},
    {"--list-sources", &CommandLine::listSources},
    {"--registered", &CommandLine::registered},
    {"--version", &CommandLine::version},
    {"--help", &CommandLine::help},
};

// Reads one command line from left to right.
class Parser {
 public:
  Parser(std::span<const std::string> arguments, std::istream& in)
      : m_arguments(arguments), m_in(in) {}

  CommandLine Parse() {
    if (m_arguments.empty()) AddError("", "there are no steps");
    while (m_next < m_arguments.size()) {
      const std::string& argument = m_arguments[m_next++];
      Guarded(argument, [&] {
        if (argument.starts_with('-'))
          ParseOption(argument);
        else
          m_result.steps.push_back(ParseStep(argument));
      });
    }
    CheckKeptNames();
    CheckLoadedProperties();
    CheckHostedFile();
    return std::move(m_result);
  }

 private:
  void AddError(const std::string& where, const std::string& what) {
    m_result.errors.push_back(where.empty() ? what : where + ": " + what);
  }

  template <typename Action>
  void Guarded(const std::string& where, Action&& action) {
    try {
      action();
    } catch (const UsageError& error) {
      AddError(where, error.what());
    }
  }

  // `--name`, `--name value` or `--name=value`
  void ParseOption(const std::string& argument) {
    static constexpr struct {
      const char* name;
      const char* form;  // of its value
      void (Parser::*take)(const std::string& value);
    } kValueOptions[] = {
        {"--view", "WxH", &Parser::TakeView},
        {"--steps", "FILE|-", &Parser::TakeSteps},
        {"--on", "EVENT=STEP", &Parser::TakeEventStep},
        {"--source", "NAME", &Parser::TakeSource},
        {"--page", "FILE", &Parser::TakePage},
        {"--ocx", "FILE", &Parser::TakeOcx},
        {"--fault", "DAT/MSG[/CAP]=TWRC", &Parser::TakeFault},
    };
    const std::size_t mark = argument.find('=');
    const bool hasValue = mark != std::string::npos;
    const std::string name = argument.substr(0, mark);
    for (const auto& flag : kFlags) {
      if (name != flag.name) continue;
      if (hasValue) throw UsageError(name + " takes no value");
      m_result.*flag.value = true;
      return;
    }
    for (const auto& option : kValueOptions) {
      if (name != option.name) continue;
      if (!hasValue && m_next == m_arguments.size())
        throw UsageError("it is written " + name + " " + option.form);
      (this->*option.take)(hasValue ? argument.substr(mark + 1) : m_arguments[m_next++]);
      return;
    }
    throw UsageError("there is no such option");
  }

  void TakeView(const std::string& value) { m_result.view = ParseSize(value); }

  void TakeSource(const std::string& value) {
    CheckSource(value);
    m_result.source = value;
  }

  void TakePage(const std::string& value) {
    if (value.empty()) throw UsageError("the file's name is missing");
    m_result.page = value;
  }

  void TakeOcx(const std::string& value) {
    if (value.empty()) throw UsageError("the file's name is missing");
    m_result.ocx = value;
  }

  void TakeFault(const std::string& value) { m_result.faults.push_back(ParseSourceFault(value)); }

  void TakeEventStep(const std::string& value) {
    const std::size_t mark = value.find('=');
    if (mark == std::string::npos) throw UsageError("it is written --on EVENT=STEP");
    const std::string name = value.substr(0, mark);
    for (const EventDescription& event : EventTable()) {
      if (!EqualsIgnoringCase(event.name, name)) continue;
      Guarded(value, [&] {
        m_result.eventSteps.push_back({event.number, ParseStep(value.substr(mark + 1))});
      });
      return;
    }
    throw UsageError("there is no event " + name);
  }

  void TakeSteps(const std::string& value) {
    if (value == "-") return ReadSteps("-", m_in);
    errno = 0;
    std::ifstream file(PathOf(value), std::ios::binary);
    if (file) return ReadSteps(value, file);
    throw UsageError("cannot read " + value + ": " + std::generic_category().message(errno));
  }

  void ReadSteps(const std::string& name, std::istream& in) {
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
      if (line.ends_with('\r')) line.pop_back();
      if (number == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
      line.erase(0, line.find_first_not_of(" \t"));
      if (line.empty() || line.starts_with('#')) continue;
      Guarded(name + ":" + std::to_string(number) + ": " + line,
              [&] { m_result.steps.push_back(ParseStep(line)); });
    }
    if (in.bad()) throw UsageError("cannot read " + name);
  }

  // Those inside events too.
  template <typename Action>
  void ForEachStep(Action&& action) const {
    for (const Step& step : m_result.steps) action(step);
    for (const EventStep& eventStep : m_result.eventSteps) action(eventStep.step);
  }

  // A picture under a name that no step keeps can never be there.
  void CheckKeptNames() {
    std::set<std::string> kept;
    ForEachStep([&](const Step& step) {
      if (const auto* keep = std::get_if<KeepPicture>(&step.action)) kept.insert(keep->name);
    });
    ForEachStep([&](const Step& step) {
      for (const std::string& name : KeptNamesIn(step))
        if (!kept.contains(name)) AddError(step.text, "no step keeps a picture as " + name);
    });
  }

  // A control takes settings from its host's document before it is used, or never.
  void CheckLoadedProperties() {
    const auto check = [&](const Step& step) {
      if (std::holds_alternative<LoadProperties>(step.action))
        AddError(step.text, "settings are loaded by a control's first step only");
    };
    for (std::size_t i = 1; i < m_result.steps.size(); ++i) check(m_result.steps[i]);
    for (const EventStep& eventStep : m_result.eventSteps) check(eventStep.step);
  }

  // A control in a file is reached by its members and its windows; what lies behind them is its
  // own.
  void CheckHostedFile() {
    const bool hasFile = !m_result.ocx.empty();
    if (!hasFile && !m_result.registered) return;
    const std::string option = hasFile ? "--ocx" : "--registered";
    if (hasFile && m_result.registered) AddError("--registered", "--ocx names the control already");
    if (m_result.trace) AddError("--trace", "what " + option + " hosts is not listened to inside");
    if (!m_result.faults.empty())
      AddError("--fault", "what " + option + " hosts is not meddled with inside");
    const auto check = [&](const Step& step) {
      const auto* call = std::get_if<CallMethod>(&step.action);
      const bool isAbout = call && EqualsIgnoringCase(call->member->name, "About");
      if (isAbout || std::holds_alternative<ClickForm>(step.action))
        AddError(step.text, "the window of what " + option + " hosts is for a person to close");
    };
    ForEachStep(check);
  }

  std::span<const std::string> m_arguments;
  std::istream& m_in;
  std::size_t m_next = 0;
  CommandLine m_result;
};

}  // namespace

CommandLine ParseCommandLine(std::span<const std::string> arguments, std::istream& in) {
  return Parser(arguments, in).Parse();
}

}  // namespace quillet
