#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/runtime_error.h"
#include "control/events.h"
#include "embed/control_window.h"
#include "platform/contracts/bitmap_services.h"
#include "platform/contracts/census.h"

namespace quillet {

// Text for one line: line feed, carriage return, NUL and backslash as \n, \r, \0 and \\.
std::string Escape(std::string_view text);

// A value as a line of output, bare: an object as the pixels of its bitmap, WxH (0x0 for an object
// without bitmap), no object as Nothing, text escaped.
std::string FormatValue(const Variant& value, const BitmapServices& bitmaps);

// The same with text in quotes, the quotes inside it escaped too.
std::string FormatQuoted(const Variant& value, const BitmapServices& bitmaps);

// `event MouseDown 1 0 10 20`
std::string FormatEvent(Event event, std::span<const Variant> arguments,
                        const BitmapServices& bitmaps);

// `run-time error 6: Overflow`
std::string FormatError(const RunTimeError& error);

// Three lines, the picture box and the bars: left, top, width and height in twips of the control;
// then the box's size in pixels, or whether the bar is visible and its min, max and value.
std::string FormatLayout(const AttendedWindow& window);

// `none`, or counts as in `2 pictures, 1 bitmap`.
std::string FormatCensus(const CensusCounts& census);

}  // namespace quillet
