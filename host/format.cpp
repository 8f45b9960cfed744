#include "host/format.h"

#include "base/rounding.h"
#include "platform/contracts/picture_services.h"

namespace quillet {
namespace {

constexpr double kTwipsPerPixel = 15;

std::string FormatObject(const ObjectRef& object, const BitmapServices& bitmaps) {
  if (!object) return "Nothing";
  BITMAP record;
  if (const auto picture = std::dynamic_pointer_cast<Picture>(object))
    bitmaps.GetObjectA(picture->Handle(), record);
  return std::to_string(record.bmWidth) + "x" + std::to_string(record.bmHeight);
}

std::string Pixels(Single twips) {
  return std::to_string(ToLong(static_cast<double>(twips) / kTwipsPerPixel));
}

std::string FormatPosition(const char* name, const AttendedWindow::Place& place) {
  std::string line = name;
  for (const Single twips : {place.left, place.top, place.width, place.height})
    line.append(" ").append(VariantToString(twips));
  return line;
}

std::string FormatBar(const char* name, const AttendedWindow::Place& bar) {
  std::string line = FormatPosition(name, bar) + (bar.visible ? " True" : " False");
  for (const Integer number : {bar.min, bar.max, bar.value})
    line.append(" ").append(std::to_string(number));
  return line;
}

}  // namespace

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '\n':
        escaped += "\\n";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\0':
        escaped += "\\0";
        break;
      case '\\':
        escaped += "\\\\";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string FormatValue(const Variant& value, const BitmapServices& bitmaps) {
  if (const auto* object = std::get_if<ObjectRef>(&value)) return FormatObject(*object, bitmaps);
  if (std::holds_alternative<Omitted>(value)) return "";
  return Escape(VariantToString(value));
}

std::string FormatQuoted(const Variant& value, const BitmapServices& bitmaps) {
  const std::string bare = FormatValue(value, bitmaps);
  if (!std::holds_alternative<std::string>(value)) return bare;
  std::string quoted = "\"";
  for (const char c : bare) {
    if (c == '"') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

std::string FormatEvent(Event event, std::span<const Variant> arguments,
                        const BitmapServices& bitmaps) {
  std::string line = std::string("event ") + Describe(event).name;
  for (const Variant& argument : arguments) line.append(" ").append(FormatValue(argument, bitmaps));
  return line;
}

std::string FormatError(const RunTimeError& error) {
  return "run-time error " + std::to_string(static_cast<int>(error.Number())) + ": " + error.what();
}

std::string FormatLayout(const AttendedWindow& window) {
  const AttendedWindow::Place box = window.BoxPlace();
  return FormatPosition("picTwain", box) + " " + Pixels(box.width) + "x" + Pixels(box.height) +
         "\n" + FormatBar("HScroll1", window.BarPlace(Bar::Horizontal)) + "\n" +
         FormatBar("VScroll1", window.BarPlace(Bar::Vertical));
}

std::string FormatCensus(const CensusCounts& census) {
  std::string text;
  const auto add = [&](int count, const char* one) {
    if (count == 0) return;
    if (!text.empty()) text += ", ";
    text += std::to_string(count) + " " + one + (count == 1 ? "" : "s");
  };
  add(census.bitmaps, "bitmap");
  add(census.deviceContexts, "device context");
  add(census.pictures, "picture");
  add(census.globalBlocks, "global block");
  add(census.windows, "window");
  return text.empty() ? "none" : text;
}

}  // namespace quillet
