#include "embed/property_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "embed/base64.h"

namespace quillet {
namespace {

constexpr const char* kPicture = "picture";
constexpr struct {
  char character, letter;
} kEscapes[] = {{'\n', 'n'}, {'\r', 'r'}, {'\0', '0'}, {'"', '"'}, {'\\', '\\'}};

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto escape = std::ranges::find(kEscapes, c, [](const auto& e) { return e.character; });
    if (escape == std::end(kEscapes))
      quoted += c;
    else
      quoted.append({'\\', escape->letter});
  }
  return quoted + '"';
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

// Reads one text from its first line to its last.
bool IsKey(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
  });
}

class Parser {
 public:
  std::vector<Property> Parse(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    while (!text.empty()) {
      ++m_line;
      const std::size_t end = text.find('\n');
      std::string_view line = text.substr(0, end);
      text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
      if (line.ends_with('\r')) line.remove_suffix(1);
      TakeLine(line);
    }
    EndPicture();
    return std::move(m_properties);
  }

 private:
  [[noreturn]] static void Refuse(int line, const std::string& what) {
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
  }

  void TakeLine(std::string_view line) {
    const bool isIndented = line.starts_with(' ') || line.starts_with('\t');
    const std::string_view content = Trim(line);
    if (content.empty() || content.starts_with('#')) return;
    if (isIndented) {
      if (m_pictureLine == 0) Refuse(m_line, "an indented line belongs to no picture");
      m_base64.append(content);
      return;
    }
    EndPicture();
    const std::size_t mark = content.find('=');
    if (mark == std::string_view::npos) Refuse(m_line, "it is written KEY = VALUE");
    Property property;
    property.key = Trim(content.substr(0, mark));
    if (!IsKey(property.key)) Refuse(m_line, "a key is written in letters, digits and _");
    if (std::ranges::find(m_properties, property.key, &Property::key) != m_properties.end())
      Refuse(m_line, property.key + " stands there twice");
    const std::string_view value = Trim(content.substr(mark + 1));
    if (value == kPicture) {
      property.value = PictureFile{};
      m_pictureLine = m_line;
    } else {
      property.value = ValueOf(value);
    }
    m_properties.push_back(std::move(property));
  }

  void EndPicture() {
    if (m_pictureLine == 0) return;
    auto bytes = DecodeBase64(m_base64);
    if (!bytes) Refuse(m_pictureLine, "the picture is no base64");
    m_properties.back().value = PictureFile{std::move(*bytes)};
    m_base64.clear();
    m_pictureLine = 0;
  }

  Variant ValueOf(std::string_view text) const {
    if (text.starts_with('"')) return Unquoted(text);
    if (text == "True") return true;
    if (text == "False") return false;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number))
      Refuse(m_line,
             "\"" + std::string(text) + "\" is no number, True, False, quoted text or picture");
    Long whole = 0;
    const auto [wholeEnd, wholeError] =
        std::from_chars(text.data(), text.data() + text.size(), whole);
    if (wholeError == std::errc{} && wholeEnd == text.data() + text.size()) return whole;
    return number + 0.0;  // without the sign of a zero
  }

  std::string Unquoted(std::string_view text) const {
    std::string result;
    for (std::size_t i = 1; i < text.size(); ++i) {
      if (text[i] == '"') {
        if (i + 1 != text.size()) Refuse(m_line, "something follows the text");
        return result;
      }
      if (text[i] != '\\') {
        result += text[i];
        continue;
      }
      const char letter = ++i < text.size() ? text[i] : '?';
      const auto escape =
          std::ranges::find(kEscapes, letter, [](const auto& e) { return e.letter; });
      if (escape == std::end(kEscapes))
        Refuse(m_line, "a backslash in a text is followed by n, r, 0, \" or another");
      result += escape->character;
    }
    Refuse(m_line, "the text's closing quote is missing");
  }

  std::vector<Property> m_properties;
  std::string m_base64;
  int m_line = 0;
  int m_pictureLine = 0;  // where the picture that is being read begins, 0 for none
};

}  // namespace

std::vector<Property> ParseProperties(std::string_view text) {
  return Parser().Parse(text);
}

std::string FormatProperties(const std::vector<Property>& properties) {
  constexpr std::size_t kLineLength = 76;
  std::string text;
  for (const Property& property : properties) {
    text += property.key + " = ";
    if (const auto* picture = std::get_if<PictureFile>(&property.value)) {
      text += std::string(kPicture) + "\n";
      const std::string base64 = EncodeBase64(picture->bytes);
      for (std::size_t at = 0; at < base64.size(); at += kLineLength)
        text += "  " + base64.substr(at, kLineLength) + "\n";
    } else {
      text += FormatPropertyValue(std::get<Variant>(property.value)) + "\n";
    }
  }
  return text;
}

std::string FormatPropertyValue(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return Quoted(*text);
  if (const auto* number = std::get_if<double>(&value)) {
    char digits[32];  // the fewest that give the number again
    return {digits, std::to_chars(std::begin(digits), std::end(digits), *number).ptr};
  }
  return VariantToString(value);
}

}  // namespace quillet
