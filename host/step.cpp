#include "host/step.h"

#include "base/runtime_error.h"
#include "host/host_step.h"
#include "host/text.h"
#include "host/usage_error.h"

namespace quillet {
namespace {

constexpr int kLargestSide = 32767;

Long NumberOfMember(std::string_view name) {
  if (name.empty()) throw UsageError("a name is missing");
  try {
    return NumberOf(name);
  } catch (const RunTimeError&) {
    throw UsageError("the control has no member " + std::string(name));
  }
}

Step::Action Named(std::string_view name) {
  const Long number = NumberOfMember(name);
  if (const Member* property = FindMember(number, Access::Get)) return ReadProperty{property};
  return CallMethod{FindMember(number, Access::Method), {}};
}

Step::Action Write(std::string_view name, std::string_view value) {
  const Long number = NumberOfMember(name);
  for (const Access access : {Access::Put, Access::PutRef})
    if (const Member* property = FindMember(number, access))
      return WriteProperty{property, std::string(value)};
  if (FindMember(number, Access::Method))
    throw UsageError(std::string(name) + " is a method: arguments follow a colon");
  throw UsageError(std::string(name) + " can only be read");
}

Step::Action Call(std::string_view name, std::string_view rest) {
  const Member* method = FindMember(NumberOfMember(name), Access::Method);
  if (!method) throw UsageError(std::string(name) + " is a property: a value follows an =");
  CallMethod call{method, {}};
  if (method->kinds.size() == 1 && method->kinds[0] == ValueKind::String) {
    call.arguments.emplace_back(std::string(rest));
    return call;
  }
  for (std::string& field : SplitFields(rest)) {
    if (field.empty())
      call.arguments.emplace_back();
    else
      call.arguments.emplace_back(std::move(field));
  }
  return call;
}

Step::Action ParseAction(std::string_view text) {
  if (text.starts_with('@')) return ParseHostStep(text);
  const std::size_t mark = text.find_first_of("=:");
  const std::string_view name = text.substr(0, mark);
  if (mark == std::string_view::npos) return Named(name);
  const std::string_view rest = text.substr(mark + 1);
  return text[mark] == '=' ? Write(name, rest) : Call(name, rest);
}

}  // namespace

Step ParseStep(std::string_view text) {
  return {std::string(text), ParseAction(text)};
}

Size ParseSize(std::string_view text) {
  const std::size_t mark = text.find_first_of("xX");
  if (mark != std::string_view::npos) {
    const auto width = ParseInt(text.substr(0, mark));
    const auto height = ParseInt(text.substr(mark + 1));
    const auto isSide = [](const auto& side) {
      return side && *side >= 0 && *side <= kLargestSide;
    };
    if (isSide(width) && isSide(height)) return {*width, *height};
  }
  throw UsageError("\"" + std::string(text) +
                   "\" is no size: WIDTHxHEIGHT in pixels, each 0 to 32767");
}

std::optional<std::string> KeptName(std::string_view picture) {
  if (!picture.starts_with('@')) return std::nullopt;
  return ToLower(picture.substr(1));
}

std::vector<std::string> KeptNamesIn(const Step& step) {
  std::vector<std::string> names;
  const auto look = [&](ValueKind kind, const std::string& text) {
    if (kind != ValueKind::Picture) return;
    if (auto name = KeptName(text)) names.push_back(*std::move(name));
  };
  if (const auto* write = std::get_if<WriteProperty>(&step.action)) {
    look(write->member->kinds[0], write->value);
  } else if (const auto* call = std::get_if<CallMethod>(&step.action)) {
    const auto kinds = call->member->kinds;
    for (std::size_t i = 0; i < call->arguments.size() && i < kinds.size(); ++i)
      if (call->arguments[i]) look(kinds[i], *call->arguments[i]);
  }
  return names;
}

}  // namespace quillet
