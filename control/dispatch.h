#pragma once

#include <span>
#include <string_view>

#include "base/variant.h"
#include "control/events.h"

namespace quillet {

class TWAIN;

enum class Access { Get, Put, PutRef, Method };

// One accessor of the control's interface: 21 reads, 17 writes and 27 methods make its 65 members.
struct Member {
  using Thunk = Variant (*)(TWAIN& control, std::span<Variant> arguments);

  Long number;  // dispatch number; the accessors of one property share it
  const char* name;
  Access access;
  std::span<const Parameter> parameters;  // of a method; a write has its one value
  std::span<const ValueKind> kinds;       // one for each argument
  ValueKind result;                       // None for writes and most methods
  const char* help;                       // null where there is none
  Thunk thunk;
};

// All members: properties from the highest number down, reads before writes, then methods in
// interface order.
std::span<const Member> Members();

// The dispatch number of a name, in any case; run-time error 438 for an unknown one.
Long NumberOf(std::string_view name);

// The member with that number and access; null when there is none.
const Member* FindMember(Long number, Access access);

// The door from the host into the control: reads, writes or calls one member. Values are converted
// to the member's kinds (errors 6 and 13); omitted and missing optional arguments get their
// defaults; by-reference arguments are written back, also by a call that fails. The control stays
// alive until the call returns, whatever the host lets go of meanwhile.
//
// Run-time errors: 438 for a number without that access, 450 for too many or too few arguments, and
// what the member itself raises.
Variant Invoke(TWAIN& control, Long number, Access access, std::span<Variant> arguments);

}  // namespace quillet
