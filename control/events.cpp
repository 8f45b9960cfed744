#include "control/events.h"

#include <array>

namespace quillet {
namespace {

constexpr Parameter kKeyPress[] = {{"KeyAscii", true}};
constexpr Parameter kKey[] = {{"KeyCode", true}, {"Shift", true}};
constexpr Parameter kMouse[] = {{"Button", true}, {"Shift", true}, {"x", true}, {"y", true}};
constexpr Parameter kProgress[] = {{"Percent", false}};

constexpr ValueKind kIntegers[] = {ValueKind::Int16, ValueKind::Int16};
constexpr ValueKind kMouseKinds[] = {ValueKind::Int16, ValueKind::Int16, ValueKind::Float32,
                                     ValueKind::Float32};
constexpr std::span<const ValueKind> kOneInteger(kIntegers, 1);

constexpr std::array kEvents = {
    EventDescription{Event::Paint, "Paint", {}, {}, nullptr},
    EventDescription{Event::Click, "Click", {}, {}, nullptr},
    EventDescription{Event::Resize, "Resize", {}, {}, nullptr},
    EventDescription{Event::Scroll, "Scroll", {}, {}, "Occurs when move the view with scrollbar."},
    EventDescription{Event::DblClick, "DblClick", {}, {}, nullptr},
    EventDescription{Event::KeyPress, "KeyPress", kKeyPress, kOneInteger, nullptr},
    EventDescription{Event::KeyUp, "KeyUp", kKey, kIntegers, nullptr},
    EventDescription{Event::KeyDown, "KeyDown", kKey, kIntegers, nullptr},
    EventDescription{Event::MouseUp, "MouseUp", kMouse, kMouseKinds, nullptr},
    EventDescription{Event::MouseDown, "MouseDown", kMouse, kMouseKinds, nullptr},
    EventDescription{Event::MouseMove, "MouseMove", kMouse, kMouseKinds, nullptr},
    EventDescription{Event::Progress, "Progress", kProgress, kOneInteger,
                     "Occurs during a acquisition."},
};

}  // namespace

std::span<const EventDescription> EventTable() {
  return kEvents;
}

const EventDescription& Describe(Event event) {
  return kEvents[static_cast<std::size_t>(event) - 1];
}

}  // namespace quillet
