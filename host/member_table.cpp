#include "host/member_table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "control/dispatch.h"
#include "host/enumerations.h"

namespace quillet {
namespace {

constexpr std::size_t kColumns = 5;
using Row = std::array<std::string, kColumns>;

std::string FormatNumber(Long number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(number));
  return text.data();
}

const char* NameOfAccess(Access access) {
  switch (access) {
    case Access::Get:
      return "get";
    case Access::Put:
      return "put";
    case Access::PutRef:
      return "putref";
    case Access::Method:
      return "method";
  }
  return "";
}

std::string FormatParameter(const Parameter& parameter, ValueKind kind) {
  std::string text = parameter.byReference ? "ByRef " : "";
  text += std::string(parameter.name) + " As " + NameOfKind(kind);
  if (!parameter.defaultValue) return text;
  const std::string quote = kind == ValueKind::String ? "\"" : "";
  return "[" + text + " = " + quote + parameter.defaultValue + quote + "]";
}

// What goes in and what comes out: a read's and a write's value is just its kind.
std::string FormatSignature(const Member& member) {
  std::string text;
  if (member.access != Access::Method) {
    return NameOfKind(member.access == Access::Get ? member.result : member.kinds[0]);
  }
  for (std::size_t i = 0; i < member.kinds.size(); ++i)
    text += (i == 0 ? "" : ", ") + FormatParameter(member.parameters[i], member.kinds[i]);
  if (member.result == ValueKind::None) return text;
  return text + (text.empty() ? "" : " ") + "-> " + NameOfKind(member.result);
}

// In characters, not bytes: what continues a UTF-8 character takes no room of its own.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string FormatRow(const Row& row, const std::array<std::size_t, kColumns>& widths, char fill) {
  std::string line = "|";
  for (std::size_t i = 0; i < kColumns; ++i) {
    const std::string padding(widths[i] - WidthOf(row[i]), fill);
    line += fill + row[i] + padding + fill + "|";
  }
  return line + "\n";
}

}  // namespace

std::string MemberTable() {
  std::vector<Row> rows = {{"Number", "Name", "Access", "Value, or parameters and result", "Help"}};
  for (const Member& member : Members())
    rows.push_back({FormatNumber(member.number), member.name, NameOfAccess(member.access),
                    FormatSignature(member), member.help ? member.help : ""});
  std::array<std::size_t, kColumns> widths{};
  for (const Row& row : rows)
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
  std::string table;
  for (const Row& row : rows) {
    table += FormatRow(row, widths, ' ');
    if (&row == &rows.front()) table += FormatRow({}, widths, '-');
  }
  return table;
}

}  // namespace quillet
