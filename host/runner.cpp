#include "host/runner.h"

#include <new>
#include <ostream>

#include "base/runtime_error.h"
#include "host/exit_status.h"
#include "host/format.h"
#include "host/png_file.h"
#include "host/text.h"

namespace quillet {
namespace {

bool AnswersWithStatus(const Member& member) {
  return EqualsIgnoringCase(member.name, "Save") || EqualsIgnoringCase(member.name, "SaveAdd");
}

}  // namespace

// One overload for each kind of action.
struct Runner::Perform {
  Runner& runner;

  Session& session() const { return runner.m_session; }
  AttendedWindow& window() const { return runner.m_session.Window(); }
  void Print(const std::string& text) const { runner.m_out << text << '\n'; }

  void operator()(const ReadProperty& read) const {
    Print(FormatValue(session().Invoke(*read.member, {}), session().Bitmaps()));
  }
  void operator()(const WriteProperty& write) const {
    Variant value = session().Argument(write.member->kinds[0], write.value);
    session().Invoke(*write.member, {&value, 1});
  }
  void operator()(const CallMethod& call) const {
    std::vector<Variant> arguments;
    const auto kinds = call.member->kinds;
    for (const auto& text : call.arguments) {
      const std::size_t i = arguments.size();
      const ValueKind kind = i < kinds.size() ? kinds[i] : ValueKind::None;
      arguments.push_back(text ? session().Argument(kind, *text) : Variant(Omitted{}));
    }
    runner.Call(*call.member, arguments);
  }
  void operator()(const TakeSnapshot& snapshot) const {
    WritePng(snapshot.file, window().Capture());
  }
  void operator()(const ResizeControl& size) const { window().Resize(size.width, size.height); }
  void operator()(const DragThumb& drag) const { window().DragThumb(drag.bar, drag.value); }
  void operator()(const ClickArrow& click) const { window().ClickArrow(click.bar, click.forward); }
  void operator()(const ClickPage& click) const { window().ClickPage(click.bar, click.forward); }
  void operator()(const UseMouse& mouse) const {
    window().Mouse(mouse.action, mouse.x, mouse.y, mouse.button, mouse.shift);
  }
  void operator()(const PressKey& key) const { window().Key(key.action, key.code, key.shift); }
  void operator()(const ReportLayout&) const { Print(FormatLayout(window())); }
  void operator()(const KeepPicture& keep) const { session().KeepPicture(keep.name); }
  void operator()(const ChooseSource& choose) const { window().WillChooseSource(choose.name); }
  void operator()(const PressSourceButton& button) const { window().WillPressScan(button.scan); }
  void operator()(const TypeFileName& answer) const {
    window().WillTypeFileName(answer.fileName, answer.yes);
  }
  void operator()(const ClickForm& click) const {
    if (!window().ClickOnForm(click.control)) throw std::runtime_error("no form is open");
  }
  void operator()(const CancelFileDialog&) const { window().WillCancelFileDialog(); }
  void operator()(const LoadProperties& load) const { session().LoadProperties(load.file); }
  void operator()(const SaveProperties& save) const { session().SaveProperties(save.file); }
  void operator()(const CloseWindow&) const { session().Close(); }
};

Runner::Runner(Platform& platform, std::unique_ptr<HostedControl> control,
               const CommandLine& commandLine, std::ostream& out, std::ostream& err)
    : m_commandLine(commandLine),
      m_out(out),
      m_err(err),
      m_handlers(HandlersOf(commandLine)),
      m_session(platform, std::move(control), *this) {}

std::vector<Runner::Handler> Runner::HandlersOf(const CommandLine& commandLine) {
  std::vector<Handler> handlers;
  for (const EventStep& eventStep : commandLine.eventSteps) handlers.push_back({&eventStep});
  return handlers;
}

int Runner::Run() {
  // Settings are read before the control is used.
  const auto& steps = m_commandLine.steps;
  if (!steps.empty() && std::holds_alternative<LoadProperties>(steps.front().action))
    RunNextStep();
  else
    Idle();
  // While a form is open the steps go on inside the one that opened it.
  if (m_session.IsOpen()) m_session.Window().WhileAFormIsOpen([this] { return RunNextStep(); });
  while (RunNextStep()) {
  }
  if (m_failed) return kFailed;
  return m_notSaved ? kNotSaved : kSuccess;
}

void Runner::Idle() {
  if (m_session.IsOpen()) m_session.Window().Idle();
}

bool Runner::RunNextStep() {
  if (m_nextStep == m_commandLine.steps.size()) return false;
  if (m_failed && !m_commandLine.keepGoing) return false;
  RunStep(m_commandLine.steps[m_nextStep++]);
  Idle();
  return true;
}

void Runner::EventRaised(Event event, std::span<Variant> arguments) {
  if (m_commandLine.events) m_out << FormatEvent(event, arguments, m_session.Bitmaps()) << '\n';
  for (Handler& handler : m_handlers) {
    if (handler.eventStep->event != event || handler.running) continue;
    if (m_failed && !m_commandLine.keepGoing) return;
    handler.running = true;
    RunStep(handler.eventStep->step);
    handler.running = false;
  }
}

void Runner::PropertyChanged(std::string_view name) {
  if (m_commandLine.events) m_out << "notify " << name << '\n';
}

void Runner::RunStep(const Step& step) {
  try {
    std::visit(Perform{*this}, step.action);
  } catch (const RunTimeError& error) {
    Fail(step, FormatError(error));
  } catch (const std::bad_alloc&) {
    Fail(step, FormatError(RunTimeError(ErrorNumber::OutOfMemory)));
  } catch (const std::exception& error) {
    Fail(step, error.what());
  }
}

void Runner::Fail(const Step& step, const std::string& reason) {
  m_failed = true;
  m_out.flush();
  m_err << "quillet: " << step.text << ": " << reason << std::endl;
}

void Runner::Call(const Member& member, std::vector<Variant>& arguments) {
  const std::vector<Variant> before = arguments;
  const Variant result = m_session.Invoke(member, arguments);
  if (member.result != ValueKind::None) m_out << FormatValue(result, m_session.Bitmaps()) << '\n';
  if (m_commandLine.byRef) PrintChangedArguments(member, before, arguments);
  if (AnswersWithStatus(member) && VariantToLong(result) != 0) m_notSaved = true;
}

void Runner::PrintChangedArguments(const Member& member, std::span<const Variant> before,
                                   std::span<const Variant> after) {
  for (std::size_t i = 0; i < after.size(); ++i) {
    const std::string text = FormatQuoted(after[i], m_session.Bitmaps());
    if (after[i] != before[i]) m_out << member.parameters[i].name << " -> " << text << '\n';
  }
}

}  // namespace quillet
