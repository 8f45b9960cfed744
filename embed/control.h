#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/variant.h"
#include "control/dispatch.h"
#include "control/events.h"

namespace quillet {

struct Platform;
class PropertyBag;
class Site;
class Surface;
class TWAIN;

// One control, as its host holds it. Its members are reached by name, in any case, or by number
// (control/dispatch.h lists them, and what they take and give); what happens to it is heard by
// sinks (control/events.h).
//
// Lifetime: the platform must outlive it; the surface and the site are shared. A host may let go of
// it at any moment, inside its own calls and events too: it ends when these are over. A sink that
// holds its control keeps it for ever.
// Errors: RunTimeError, with the numbers that hosts know: 6 overflow, 7 out of memory, 9 subscript
// out of range, 13 type mismatch, 380 a value that the surface refuses, 438 no such member, 450
// wrong number of arguments, and what a member raises besides. What fails leaves the picture as it
// was. Save and SaveAdd answer a status instead: 0 for success.
// Threads: one, the host's; nothing is locked.
class Control {
 public:
  // A new control with the settings of a new instance. The site may be none: nobody is then told of
  // changed properties. One surface carries one control.
  Control(Platform& platform, std::shared_ptr<Surface> surface,
          std::shared_ptr<Site> site = nullptr);
  Control(Control&&) noexcept;
  Control& operator=(Control&&) noexcept;
  ~Control();

  // The settings that the host keeps with its document: taken over before the control is used,
  // given out at any time. An error of the bag, or of a value that does not fit, ends either; what
  // was read before it stays.
  void ReadProperties(PropertyBag& bag);
  void WriteProperties(PropertyBag& bag) const;

  // Reads and writes a property. A picture is written as the object itself, not as a copy.
  Variant Get(std::string_view name) const;
  void Put(std::string_view name, Variant value);

  // Calls a method; arguments that are left out at the end, or Omitted{}, take their defaults.
  template <typename... Arguments>
  Variant Call(std::string_view name, Arguments&&... arguments) {
    std::vector<Variant> values{Variant(std::forward<Arguments>(arguments))...};
    return Invoke(NumberOf(name), Access::Method, values);
  }

  // Any of these by number. What the call leaves in its by-reference arguments is left in
  // `arguments`.
  Variant Invoke(Long number, Access access, std::span<Variant> arguments) const;

  // Sinks hear events in the order in which they connected. The cookie undoes the connection; false
  // when nothing is connected under it. Both may be called inside an event.
  int Connect(std::shared_ptr<EventSink> sink);
  bool Disconnect(int cookie);

 private:
  std::shared_ptr<TWAIN> m_control;
};

}  // namespace quillet
