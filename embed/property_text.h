#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/variant.h"

namespace quillet {

// A picture as its file's bytes; none for a picture that holds nothing.
struct PictureFile {
  std::vector<Byte> bytes;
};

// One setting of a control: a value that is no object, or a picture.
struct Property {
  std::string key;
  std::variant<Variant, PictureFile> value;
};

// Settings as readable text, one a line:
//
//   # comment
//   Quality = 90
//   Enabled = False
//   Filename = "page.tif"
//   MouseIcon = picture
//     AAABAAEAEBA...
//
// Numbers are decimal; in quoted text \n, \r, \0, \" and \\ stand for line feed, carriage return,
// NUL, quote and backslash. A picture is its file in base64 on the indented lines that follow.

// std::runtime_error, beginning with the line's number, for what is not written so or names a key
// twice.
std::vector<Property> ParseProperties(std::string_view text);
std::string FormatProperties(const std::vector<Property>& properties);
// Run-time error 13 for an object.
std::string FormatPropertyValue(const Variant& value);

}  // namespace quillet
