#include "server/late_binding.h"

#include <algorithm>
#include <vector>

#include "base/runtime_error.h"
#include "control/dispatch.h"
#include "platform/win32/text.h"
#include "server/com_variant.h"

namespace quillet {
namespace {

bool SameName(const wchar_t* name, const char* known) {
  return ::CompareStringOrdinal(name, -1, Utf16(known).c_str(), -1, TRUE) == CSTR_EQUAL;
}

const Member* MemberFor(DISPID number, WORD flags) {
  static constexpr struct {
    WORD flag;
    Access access;
  } kWays[] = {{DISPATCH_METHOD, Access::Method},
               {DISPATCH_PROPERTYGET, Access::Get},
               {DISPATCH_PROPERTYPUTREF, Access::PutRef},
               {DISPATCH_PROPERTYPUT, Access::Put}};
  for (const auto& way : kWays)
    if (flags & way.flag)
      if (const Member* member = FindMember(number, way.access)) return member;
  return nullptr;
}

// Which of the given arguments stands for each parameter; null for one that was left out. Arguments
// come last to first, the named ones before the others.
std::vector<VARIANT*> ByParameter(const Member& member, DISPPARAMS& given) {
  const bool isWrite = member.access == Access::Put || member.access == Access::PutRef;
  const std::size_t most = member.kinds.size();
  if (given.cArgs > most || given.cNamedArgs > given.cArgs)
    throw RunTimeError(ErrorNumber::WrongNumberOfArguments, member.name);
  std::vector<VARIANT*> arguments(most, nullptr);
  const UINT positional = given.cArgs - given.cNamedArgs;
  for (UINT i = 0; i < positional; ++i) arguments[i] = &given.rgvarg[given.cArgs - 1 - i];
  for (UINT i = 0; i < given.cNamedArgs; ++i) {
    const DISPID name = given.rgdispidNamedArgs[i];
    const DISPID place = isWrite && name == DISPID_PROPERTYPUT ? 0 : name;
    if (place < 0 || static_cast<std::size_t>(place) >= most ||
        arguments[static_cast<std::size_t>(place)])
      throw RunTimeError(ErrorNumber::WrongNumberOfArguments, member.name);
    arguments[static_cast<std::size_t>(place)] = &given.rgvarg[i];
  }
  return arguments;
}

bool IsSame(const Variant& a, const Variant& b) {
  const auto* object = std::get_if<ObjectRef>(&a);
  const auto* other = std::get_if<ObjectRef>(&b);
  return object && other ? SameObject(*object, *other) : a == b;
}

}  // namespace

HRESULT FindNumbers(const LPOLESTR* names, UINT count, DISPID* numbers) {
  std::fill_n(numbers, count, DISPID_UNKNOWN);
  const auto members = Members();
  const auto named = [&](const Member& member) { return SameName(names[0], member.name); };
  const auto member = std::find_if(members.begin(), members.end(), named);
  if (member == members.end()) return DISP_E_UNKNOWNNAME;
  numbers[0] = member->number;
  HRESULT result = S_OK;
  for (UINT i = 1; i < count; ++i) {
    for (std::size_t place = 0; place < member->parameters.size(); ++place)
      if (SameName(names[i], member->parameters[place].name))
        numbers[i] = static_cast<DISPID>(place);
    if (numbers[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT InvokeMember(ControlCore& core, DISPID number, WORD flags, DISPPARAMS& given,
                     VARIANT* result, UINT& argumentAtFault) {
  const Member* member = MemberFor(number, flags);
  if (!member) return DISP_E_MEMBERNOTFOUND;
  const std::vector<VARIANT*> sources = ByParameter(*member, given);

  std::vector<Variant> arguments;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (sources[i]) argumentAtFault = static_cast<UINT>(sources[i] - given.rgvarg);
    arguments.push_back(sources[i] ? FromVariant(*sources[i], member->kinds[i], core.Pictures())
                                   : Variant(Omitted{}));
  }
  const std::vector<Variant> before = arguments;
  const auto writeBack = [&] {
    for (std::size_t i = 0; i < sources.size(); ++i)
      if (sources[i] && !IsSame(arguments[i], before[i])) WriteBack(*sources[i], arguments[i]);
  };
  Variant answer;
  try {
    answer = Invoke(core.Control(), number, member->access, arguments);
  } catch (...) {
    writeBack();
    throw;
  }
  if (member->access != Access::Get) core.Watcher().Changed();
  writeBack();
  if (result) ToVariant(answer, *result);
  return S_OK;
}

}  // namespace quillet
