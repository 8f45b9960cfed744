#include "control/dispatch.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "base/runtime_error.h"
#include "control/TWAIN.h"

namespace quillet {
namespace {

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

// One value for each parameter, defaults in place of what was left out.
std::vector<Variant> Complete(const Member& member, std::span<const Variant> given) {
  const std::size_t count = member.kinds.size();
  if (given.size() > count) throw RunTimeError(ErrorNumber::WrongNumberOfArguments, member.name);
  std::vector<Variant> arguments(given.begin(), given.end());
  arguments.resize(count, Omitted{});
  for (std::size_t i = 0; i < count; ++i) {
    if (!std::holds_alternative<Omitted>(arguments[i])) continue;
    const bool isOptional = i < member.parameters.size() && member.parameters[i].defaultValue;
    if (!isOptional) throw RunTimeError(ErrorNumber::WrongNumberOfArguments, member.name);
    arguments[i] = std::string(member.parameters[i].defaultValue);
  }
  return arguments;
}

}  // namespace

Long NumberOf(std::string_view name) {
  for (const Member& member : Members())
    if (EqualsIgnoringCase(member.name, name)) return member.number;
  throw RunTimeError(ErrorNumber::MemberNotSupported, std::string(name));
}

const Member* FindMember(Long number, Access access) {
  for (const Member& member : Members())
    if (member.number == number && member.access == access) return &member;
  return nullptr;
}

Variant Invoke(TWAIN& control, Long number, Access access, std::span<Variant> arguments) {
  const std::shared_ptr<TWAIN> alive = control.shared_from_this();
  const Member* member = FindMember(number, access);
  if (!member) throw RunTimeError(ErrorNumber::MemberNotSupported);
  std::vector<Variant> complete = Complete(*member, arguments);
  const auto writeBack = [&] {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const bool byReference = i < member->parameters.size() && member->parameters[i].byReference;
      if (byReference && !std::holds_alternative<Omitted>(arguments[i]))
        arguments[i] = std::move(complete[i]);
    }
  };
  Variant result;
  try {
    result = member->thunk(control, complete);
  } catch (...) {
    writeBack();
    throw;
  }
  writeBack();
  return result;
}

}  // namespace quillet
