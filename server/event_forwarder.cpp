#include "server/event_forwarder.h"

#include <array>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr std::size_t kMostArguments = 4;

// What a reference refers to.
union Cell {
  SHORT integer;
  FLOAT number;
};

}  // namespace

void EventForwarder::Invoke(Event event, std::span<Variant> arguments) {
  if (*m_frozen > 0) return;
  const EventDescription& description = Describe(event);
  const std::size_t count = arguments.size();
  if (count > kMostArguments) throw RunTimeError(ErrorNumber::InvalidProcedureCall);

  std::array<Cell, kMostArguments> cells{};
  std::array<VARIANTARG, kMostArguments> given{};
  for (std::size_t i = 0; i < count; ++i) {
    VARIANTARG& argument = given[count - 1 - i];
    const bool isFloat = description.kinds[i] == ValueKind::Float32;
    if (isFloat)
      cells[i].number = VariantToSingle(arguments[i]);
    else
      cells[i].integer = VariantToInteger(arguments[i]);
    if (!description.parameters[i].byReference) {
      argument.vt = VT_I2;
      argument.iVal = cells[i].integer;
    } else if (isFloat) {
      argument.vt = VT_BYREF | VT_R4;
      argument.pfltVal = &cells[i].number;
    } else {
      argument.vt = VT_BYREF | VT_I2;
      argument.piVal = &cells[i].integer;
    }
  }

  // The connection may end inside the call.
  const ComPtr<::IDispatch> sink = m_sink;
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(count), 0};
  sink->Invoke(static_cast<DISPID>(event), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
               &parameters, nullptr, nullptr, nullptr);

  for (std::size_t i = 0; i < count; ++i) {
    if (!description.parameters[i].byReference) continue;
    if (description.kinds[i] == ValueKind::Float32)
      arguments[i] = Single{cells[i].number};
    else
      arguments[i] = Integer{cells[i].integer};
  }
}

}  // namespace quillet
