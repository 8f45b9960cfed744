#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "base/types.h"
#include "base/variant.h"

namespace quillet {

// The events of the control's event interface, by dispatch number.
enum class Event : Long {
  Paint = 1,
  Click = 2,
  Resize = 3,
  Scroll = 4,
  DblClick = 5,
  KeyPress = 6,
  KeyUp = 7,
  KeyDown = 8,
  MouseUp = 9,
  MouseDown = 10,
  MouseMove = 11,
  Progress = 12,
};

enum class ValueKind {
  None,
  Int16,
  Int32,
  Float32,
  Boolean,
  String,
  Picture,
  OleColor,
  ImageColorType,
  ImageType,
  FitType,
};

// One parameter of a member or an event, as the type library shows it.
struct Parameter {
  const char* name;
  bool byReference = false;
  // Text of the default, null for a required parameter.
  const char* defaultValue = nullptr;
};

struct EventDescription {
  Event number;
  const char* name;
  std::span<const Parameter> parameters;
  std::span<const ValueKind> kinds;  // one for each parameter
  const char* help;                  // null where there is none
};

// The twelve events in order of their numbers.
std::span<const EventDescription> EventTable();
const EventDescription& Describe(Event event);

// A host's receiver of events. Arguments are by reference unless the event says otherwise: what is
// left in them is what the control's surface goes on with. What a sink throws is dropped.
class EventSink {
 public:
  virtual ~EventSink() = default;
  virtual void Invoke(Event event, std::span<Variant> arguments) = 0;
};

}  // namespace quillet
