#include "host/host_step.h"

#include <limits>
#include <span>

#include "host/source_name.h"
#include "host/text.h"
#include "host/usage_error.h"

namespace quillet {
namespace {

using Fields = std::span<const std::string>;

// Words that stand for a value, in any case.
template <typename T>
struct Word {
  const char* word;
  T value;
};

constexpr Word<Bar> kBars[] = {{"h", Bar::Horizontal}, {"v", Bar::Vertical}};
constexpr Word<bool> kDirections[] = {{"+", true}, {"-", false}};
constexpr Word<MouseAction> kMouseActions[] = {{"down", MouseAction::Down},
                                               {"move", MouseAction::Move},
                                               {"up", MouseAction::Up},
                                               {"click", MouseAction::Click},
                                               {"dblclick", MouseAction::DblClick}};
constexpr Word<KeyAction> kKeyActions[] = {
    {"down", KeyAction::Down}, {"press", KeyAction::Press}, {"up", KeyAction::Up}};

constexpr Word<bool> kSourceButtons[] = {{"scan", true}, {"cancel", false}};

template <typename T, std::size_t N>
T Choose(const std::string& text, const Word<T> (&words)[N]) {
  std::string known;
  for (const auto& [word, value] : words) {
    if (EqualsIgnoringCase(text, word)) return value;
    known += (known.empty() ? "" : ", ") + std::string(word);
  }
  throw UsageError("\"" + text + "\" is none of " + known);
}

int Number(const std::string& text, int least, int most) {
  const auto number = ParseInt(text);
  if (!number || *number < least || *number > most)
    throw UsageError("\"" + text + "\" is no number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  return *number;
}

Integer IntegerNumber(const std::string& text, int least, int most) {
  return static_cast<Integer>(Number(text, least, most));
}

constexpr int kLeast = std::numeric_limits<Integer>::min();
constexpr int kMost = std::numeric_limits<Integer>::max();
constexpr int kAllButtons = 1 + 2 + 4;
constexpr int kAllModifiers = 1 + 2 + 4;

Integer Modifiers(Fields fields, std::size_t index) {
  return index < fields.size() ? IntegerNumber(fields[index], 0, kAllModifiers) : Integer{0};
}

// Moving names every button that is held; each other action is one button's.
Integer MouseButton(MouseAction action, Fields fields) {
  const bool moves = action == MouseAction::Move;
  if (fields.size() < 4) return moves ? 0 : 1;
  const Integer button = IntegerNumber(fields[3], 0, kAllButtons);
  if (!moves && button != 1 && button != 2 && button != 4)
    throw UsageError("\"" + fields[3] + "\" is no button: 1 left, 2 right, 4 middle");
  return button;
}

Step::Action Snapshot(Fields fields) {
  if (fields[0].empty()) throw UsageError("the file's name is missing");
  return TakeSnapshot{fields[0]};
}

Step::Action Resize(Fields fields) {
  const Size size = ParseSize(fields[0]);
  return ResizeControl{size.width, size.height};
}

Step::Action Scroll(Fields fields) {
  return DragThumb{Choose(fields[0], kBars), IntegerNumber(fields[1], kLeast, kMost)};
}

Step::Action Arrow(Fields fields) {
  return ClickArrow{Choose(fields[0], kBars), Choose(fields[1], kDirections)};
}

Step::Action Page(Fields fields) {
  return ClickPage{Choose(fields[0], kBars), Choose(fields[1], kDirections)};
}

Step::Action Mouse(Fields fields) {
  const MouseAction action = Choose(fields[0], kMouseActions);
  return UseMouse{action, Number(fields[1], kLeast, kMost), Number(fields[2], kLeast, kMost),
                  MouseButton(action, fields), Modifiers(fields, 4)};
}

Step::Action Key(Fields fields) {
  return PressKey{Choose(fields[0], kKeyActions), IntegerNumber(fields[1], kLeast, kMost),
                  Modifiers(fields, 2)};
}

Step::Action Layout(Fields) {
  return ReportLayout{};
}

Step::Action Keep(Fields fields) {
  if (fields[0].empty()) throw UsageError("a name is missing");
  return KeepPicture{ToLower(fields[0])};
}

Step::Action ChooseNext(Fields fields) {
  CheckSource(fields[0]);
  return ChooseSource{fields[0]};
}

Step::Action PressNext(Fields fields) {
  return PressSourceButton{Choose(fields[0], kSourceButtons)};
}

Step::Action AnswerNext(Fields fields, bool yes) {
  if (fields[0].empty()) throw UsageError("the file's name is missing");
  return TypeFileName{fields[0], yes};
}

Step::Action AnswerYes(Fields fields) {
  return AnswerNext(fields, true);
}

Step::Action AnswerNo(Fields fields) {
  return AnswerNext(fields, false);
}

Step::Action CancelNext(Fields) {
  return CancelFileDialog{};
}

Step::Action Close(Fields) {
  return CloseWindow{};
}

Step::Action Restore(Fields fields) {
  if (fields[0].empty()) throw UsageError("the file's name is missing");
  return LoadProperties{fields[0]};
}

Step::Action Preserve(Fields fields) {
  if (fields[0].empty()) throw UsageError("the file's name is missing");
  return SaveProperties{fields[0]};
}

Step::Action PressOk(Fields) {
  return ClickForm{"cmdOK"};
}

Step::Action ClickAddress(Fields) {
  return ClickForm{"lblAddress"};
}

struct Verb {
  const char* name;
  const char* form;  // of its arguments
  std::size_t leastFields, mostFields;
  bool takesRest;  // one field, commas and all
  Step::Action (*parse)(Fields);
};

constexpr Verb kVerbs[] = {
    {"snapshot", ":FILE.png", 1, 1, true, Snapshot},
    {"resize", ":WxH", 1, 1, false, Resize},
    {"scroll", ":h|v,VALUE", 2, 2, false, Scroll},
    {"arrow", ":h|v,+|-", 2, 2, false, Arrow},
    {"page", ":h|v,+|-", 2, 2, false, Page},
    {"mouse", ":down|move|up|click|dblclick,X,Y[,BUTTON[,SHIFT]]", 3, 5, false, Mouse},
    {"key", ":down|press|up,CODE[,SHIFT]", 2, 3, false, Key},
    {"layout", "", 0, 0, false, Layout},
    {"keep", ":NAME", 1, 1, true, Keep},
    {"choose", ":NAME", 1, 1, true, ChooseNext},
    {"source", ":scan|cancel", 1, 1, false, PressNext},
    {"answer", ":PATH", 1, 1, true, AnswerYes},
    {"answer-no", ":PATH", 1, 1, true, AnswerNo},
    {"cancel", "", 0, 0, false, CancelNext},
    {"close", "", 0, 0, false, Close},
    {"load-properties", ":FILE", 1, 1, true, Restore},
    {"save-properties", ":FILE", 1, 1, true, Preserve},
    {"ok", "", 0, 0, false, PressOk},
    {"web", "", 0, 0, false, ClickAddress},
};

const Verb& FindVerb(std::string_view name) {
  for (const Verb& verb : kVerbs)
    if (EqualsIgnoringCase(name, verb.name)) return verb;
  throw UsageError("there is no verb @" + std::string(name));
}

}  // namespace

Step::Action ParseHostStep(std::string_view text) {
  const std::size_t mark = text.find_first_of("=:");
  const Verb& verb = FindVerb(text.substr(1, mark == std::string_view::npos ? mark : mark - 1));
  std::vector<std::string> fields;
  if (mark != std::string_view::npos && text[mark] == ':') {
    const std::string_view rest = text.substr(mark + 1);
    fields = verb.takesRest ? std::vector{std::string(rest)} : SplitFields(rest);
  }
  const bool misplacedMark = mark != std::string_view::npos && text[mark] == '=';
  if (misplacedMark || fields.size() < verb.leastFields || fields.size() > verb.mostFields)
    throw UsageError("it is written @" + std::string(verb.name) + verb.form);
  return verb.parse(fields);
}

}  // namespace quillet
